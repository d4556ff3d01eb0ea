#include "reset.h"

#include <errno.h>
#include <unistd.h>

#include <cstdio>
#include <string>
#include <string_view>
#include <vector>

#include "DB_uni_process.h"
#include "alter.h"
#include "catalogue.h"
#include "created_table.h"
#include "engine.h"
#include "files.h"
#include "log.h"
#include "start.h"
#include "state.h"
#include "store.h"
#include "work.h"

namespace {

using namespace dbshell;

constexpr const char* kSourceFile = "main/dbutil.c";

// Made and saved in this order.  The schedule of the wireless alarm is saved with its table.
struct Kept {
    const char* table;
    const char* save;  // null: another's save stores into it
};
constexpr Kept kAlways[] = {
    {"dev_info", "db_set_dev_info"},
    {"front_other_config", "db_save_front_other_config"},
    {"dev_hwconfig_info", "db_set_hwconfig"},
    {"remote_ctrl_list", "save_remote_ctrl_to_db"},
    {"week_config_list", nullptr},
    {"wireless_alarm_param", "save_wireless_alarm_to_db"},
    {"zorvy_config", "db_save_zorvy_config"},
};
constexpr Kept kAccess[] = {
    {"netconfig_table", "db_save_netconfig"},
    {"ipaddr_list", "db_save_ipaddr_list"},
    {"local_port_list", "db_save_local_port"},
    {"pppoe_config_info", "save_pppoe_param_to_db"},
    {"security_config", "db_save_security_config"},
    {"sec_user_mana_info", "db_set_sec_user_info"},
    {"wep_encrypt_info", "db_save_wep_encrypt"},
    {"wep_key_list", "db_save_wep_key"},
    {"sec_lock_auth_db_info", "db_set_sec_lock_auth_db_info"},
    {"sd_card_lock_config", "db_set_sd_card_lock_config"},
    {"open_platformat_app_param_config", "db_set_open_platformat_app_param_cfg"},
};

std::vector<Kept> kept_in(int mode) {
    std::vector<Kept> kept(std::begin(kAlways), std::end(kAlways));
    if (mode == kResetKeepingAccess)
        kept.insert(kept.end(), std::begin(kAccess), std::end(kAccess));
    return kept;
}

int make_tables(const std::vector<Kept>& kept) {
    int result = 0;
    for (const Kept& k : kept) {
        const CreatedTable* created = created_table(k.table);
        result |=
            created == nullptr ? -1 : add_table(get_db_handle(), std::string(created->statement).c_str());
    }
    if (result != 0)
        DB_LOG_AS(kError, "set_system_default_param", "Add table error...\n");
    return result;
}

int save_tables(const std::vector<Kept>& kept) {
    int result = 0;
    for (const Kept& k : kept)
        if (k.save != nullptr)
            result |= call_table_function(k.save, {}).value_or(-1);
    if (result != 0)
        DB_LOG_AS(kError, "set_system_default_param", "DB save failed...\n");
    return result;
}

// The database is closed while its successor is made; one that was open is opened again where that fails.
class Closed {
  public:
    Closed() : was_open_(get_db_handle() != nullptr) {
        db_handle db = get_db_handle();
        if (!was_open_)
            DB_LOG_AS(kError, "set_system_default_param", "database is already closed...\n");
        db_close(&db);
    }
    ~Closed() {
        // A successor that has moved is the database, if perhaps not for good.
        if (was_open_)
            open_again(successor_ != nullptr && check_file_exist(successor_) != 0);
    }
    Closed(const Closed&) = delete;
    Closed& operator=(const Closed&) = delete;
    void may_be_replaced_by(const char* successor) { successor_ = successor; }
    void for_good() { was_open_ = false; }

  private:
    bool was_open_;
    const char* successor_ = nullptr;
};

// The database of what is kept, complete and on the storage.
bool make(const char* path, int mode) {
    const std::vector<Kept> kept = kept_in(mode);
    std::vector<const Table*> stores;
    for (const Kept& k : kept)
        if (k.save != nullptr)
            stores.push_back(find_function(k.save).table);
    const ForAWhile next(db_open(path));
    if (get_db_handle() == nullptr) {
        DB_LOG_AS(kError, "set_system_default_param", "db_open %s failed...\n", path);
        return false;
    }
    Work work;
    return work.begin_anew(stores) && make_tables(kept) == 0 && save_tables(kept) == 0 && work.commit() &&
           sync_file(path);
}

// For good: a power cut after this does not bring it back.
bool remove_for_good(const char* path) {
    const bool removed = std::remove(path) == 0;
    const int error = errno;
    if (!removed)
        std::printf("remove %s failed, errno = %d\n", path, error);
    return (removed || error == ENOENT) && remove_journal(path) && sync_folder_of(path);
}

}  // namespace

int set_system_default_param(int mode) {
    std::printf("set_system_default_param....%d...\n", mode);
    const DeviceQueries queries;
    NewFile next(get_db_path());
    Closed closed;
    if (!make(next.path(), mode))
        return -1;
    closed.may_be_replaced_by(next.path());
    // A backup that outlived the old database would undo the reset at the next start; so it goes first.
    if (!remove_for_good(get_db_backup_path()) || !next.take_place())
        return -1;
    closed.for_good();
    closing_flag = true;
    std::puts("set_system_default_param.....success...");
    return 0;
}
