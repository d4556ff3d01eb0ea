#include "salvage.h"

#include <algorithm>
#include <cstring>

#include "catalogue.h"
#include "engine.h"
#include "log.h"
#include "record_cells.h"
#include "state.h"
#include "store.h"
#include "work.h"

namespace {

using namespace dbshell;

constexpr const char* kSourceFile = "main/dbutil.c";

constexpr std::string_view kNetwork[] = {"db_get_netconfig",  "db_get_wep_encrypt",
                                         "db_get_wep_key",    "db_get_ipaddr_list",
                                         "db_get_local_port", "get_pppoe_param_from_db"};

bool is_read(std::string_view function) {
    return call_table_function(function, {}) == 0;
}

// Loads go to this record while it stands in for the shared one.
class StandIn {
  public:
    explicit StandIn(DEVICECONFIG* record) : shared_(get_cfg_param()) { set_cfg_param(record); }
    ~StandIn() { set_cfg_param(shared_); }
    StandIn(const StandIn&) = delete;
    StandIn& operator=(const StandIn&) = delete;

  private:
    DEVICECONFIG* shared_;
};

}  // namespace

Salvage::Salvage(const char* path) : read_(std::make_unique<DEVICECONFIG>()) {
    std::memcpy(read_.get(), get_cfg_param(), sizeof *read_);
    const StandIn stand_in(read_.get());
    const ForAWhile damaged(db_open(path));
    Work work;
    if (work.begin_to_load() && is_read(encryption_word_table().get)) {
        network_ = std::all_of(std::begin(kNetwork), std::end(kNetwork), is_read);
        alarm_server_ = is_read("db_get_zorvy_config");
    }
}

void Salvage::restore() const {
    DEVICECONFIG* const record = get_cfg_param();
    if (network_) {
        DB_LOG_AS(kWarning, "init_database", "Try to restore the network parameters\n");
        for (const std::string_view function : kNetwork)
            for (const Table* t = find_function(function).table; t != nullptr; t = next_loaded_part(*t))
                for (const Cell& cell : cells_of_table(*t))
                    std::memcpy(reinterpret_cast<std::byte*>(record) + cell.offset,
                                reinterpret_cast<const std::byte*>(read_.get()) + cell.offset,
                                cell.field->size);
    }
    if (alarm_server_) {
        DB_LOG_AS(kWarning, "init_database",
                  "Try to restore the zorvy network parameters(alarm server addr and port).\n");
        const Zorvy& from = read_->platform.zorvy.config;
        Zorvy& to = record->platform.zorvy.config;
        std::memcpy(to.alarm_server, from.alarm_server, sizeof to.alarm_server);
        to.alarm_port = from.alarm_port;
    }
}
