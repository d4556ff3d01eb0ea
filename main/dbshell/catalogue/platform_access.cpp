// Login security and remote access.
#include "catalogue.h"
#include "log.h"
#include "state.h"

namespace {

constexpr const char* kSourceFile = "main/dbshell.c";

int note_encryption_version(const Table&) {
    DB_LOG_AS(kError, "db_get_sec_lock_auth_db_info", "\n\ndb_enc_version = %u\n\n",
              get_cfg_param()->sec_lock_auth.db_enc_version);
    return 0;
}

constexpr Table kTables[] = {
    // The centre that alarms are reported to, and the pairing of the wireless network by PIN.
    TABLE(single_row, platform.psia_alarm_center, .number = 64, .get = "get_psia_alarm_center_from_db",
          .set = "save_psia_alarm_center_to_db", .says = {.write = "SQL error\n"},
          .count = SQL("select count(*) from psia_alarm_to_center;"),
          .fill = SQL("insert into psia_alarm_to_center(idx, protcol_type, auth_metod, param_format, "
                      "add_format, url, host_name, port_num, user_name, pass_word, wps_enable, wps_pincode, "
                      "interval_times) values(1, 0, 0, 0, 0, '', '', 0, '', '', 0, '', 0);"),
          .save = SAVE(
              "update psia_alarm_to_center set protcol_type = %d, auth_metod = %d, param_format = %d, "
              "add_format = %d, url = '%q', host_name = '%q', port_num = %d, user_name = '%q', pass_word = "
              "'%q', wps_enable = %d, wps_pincode = '%q', interval_times = %d where idx = 1;",
              FIELDS(protcol_type, auth_metod, param_format, add_format, url, host_name, port_num, user_name,
                     pass_word, wps_enable, wps_pincode, interval_times))),

    // The central management service that the camera registers with.
    TABLE(single_row, platform.cms, .number = 104, .get = "db_get_cms_config", .set = "db_set_cms_config",
          .says = {.write = "SQL error\n"}, .count = SQL("select count(*) from cms_config;"),
          .fill = SQL("insert into cms_config(idx, udp_port, puid, password) values(1, 0, '0','0');"),
          .save = SAVE("update cms_config set udp_port = %d, puid = '%q', password = '%q' where idx = 1;",
                       FIELDS(udp_port, puid, password))),

    // The security levels, and which services are open.
    TABLE(single_row, platform.security, .number = 160, .get = "db_get_security_config",
          .set = "db_save_security_config", .says = {.write = "SQL error:%s\n"},
          .save = SAVE("replace into security_config (idx, security_level, cmdcheck_level, loginlevel, "
                       "web_auth, ssh_enable, illegal_login_lock, active_status, https_enable) values(1, %d, "
                       "%d, %d, %d, %d, %d, %d, %d);",
                       FIELDS(security_level, cmdcheck_level, loginlevel, web_auth, ssh_enable,
                              illegal_login_lock, active_status, https_enable))),

    // The login lock policy, the password rules, and the version of the field encryption in use.
    TABLE(
        single_row, sec_lock_auth, .number = 187, .get = "db_get_sec_lock_auth_db_info",
        .set = "db_set_sec_lock_auth_db_info",
        .save = SAVE(
            "replace into sec_lock_auth_db_info (idx, lockcount, locktype, lockipcount, locktime, minpwdlen, "
            "maxpwdlen, complexity, db_enc_version) values(1, %u, %u, %u, %u, %u, %u, %u, %u);",
            FIELDS(lockcount, locktype, lockipcount, locktime, minpwdlen, maxpwdlen, complexity,
                   db_enc_version)),
        .also_load = note_encryption_version),
};

}  // namespace

const std::span<const Table> kPlatformTables = kTables;
