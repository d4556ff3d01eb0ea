// Who may reach the camera, and how it reaches services outside: platforms, clouds, centres, networks beyond its own.
#include "catalogue.h"
#include "vocabulary.h"

namespace dbshell {

namespace {

constexpr Messages kSays{.write = "SQL error\n"};
constexpr TextCodec kCertificates = [] {
    TextCodec list = kArray<decltype(OnvifCertPath::certid_str), ','>;
    list.joined = true;
    return list;
}();
constexpr std::string_view kLocalAddress = "socks_local_ip holds the local addresses";

// Platforms and centres that the camera belongs to.
constexpr Table kCentreTables[] = {
    // The centre that alarms are reported to, and the pairing of the wireless network by PIN.
    ENSURE(single_row, platform.psia_alarm_center, 64, "get_psia_alarm_center_from_db", "save_psia_alarm_center_to_db",
           .fill = SQL("insert into psia_alarm_to_center(idx, protcol_type, auth_metod, param_format, add_format, url, host_name, port_num, user_name, pass_word, wps_enable, wps_pincode, interval_times) values(1, 0, 0, 0, 0, '', '', 0, '', '', 0, '', 0);"),
           .save = SAVE("update psia_alarm_to_center set protcol_type = %d, auth_metod = %d, param_format = %d, add_format = %d, url = '%q', host_name = '%q', port_num = %d, user_name = '%q', pass_word = '%q', wps_enable = %d, wps_pincode = '%q', interval_times = %d where idx = 1;",
                        FIELDS(protcol_type, auth_metod, param_format, add_format, url, host_name, port_num, user_name,
                               pass_word, wps_enable, wps_pincode, interval_times))),

    // The central management service that the camera registers with.
    ENSURE(single_row, platform.cms, 104, "db_get_cms_config", "db_set_cms_config",
           .fill = SQL("insert into cms_config(idx, udp_port, puid, password) values(1, 0, '0','0');"),
           .save = SAVE("update cms_config set udp_port = %d, puid = '%q', password = '%q' where idx = 1;",
                        FIELDS(udp_port, puid, password))),

    // Two SIP registrations: a plain one, and one with a server identity and keep-alive.
    ENSURE(single_row, platform.sip, 107, "db_get_sip_config", "db_save_sip_config",
           .fill = SQL("insert into sip_config(idx, transport_type, local_port, stream_idx, std_enable, std_registrar, std_reg_port, std_proxy, std_proxy_port, std_dispname, std_username, std_authid, std_password, std_expires, std_reg_interval, gb_enable, gb_registrar, gb_reg_port, serverid, serverdomain, gb_username, gb_authid, gb_password, gb_expires, livetime, hbtime, hbcount, gb_reg_interval, sip_version) values(1, 0, 0, 0, 0, '', 0, '', 0, '', '', '', '', 0, 0, 0, '', 0, '', '', '', '', '', 0, 0, 0, 0, 0, 0);"),
           .save = SAVE("update sip_config set transport_type = %d, local_port = %d, stream_idx = %d, std_enable = %d, std_registrar = '%q', std_reg_port = %d, std_proxy = '%q', std_proxy_port = %d, std_dispname = '%q', std_username = '%q', std_authid = '%q', std_password = '%q', std_expires = %d, std_reg_interval = %d, gb_enable = %d, gb_registrar = '%q', gb_reg_port = %d, serverid = '%q', serverdomain = '%q', gb_username = '%q', gb_authid = '%q', gb_password = '%q', gb_expires = %d, livetime = %d, hbtime = %d, hbcount = %d, gb_reg_interval = %d, sip_version = %d where idx = 1;",
                        FIELDS(transport_type, local_port, stream_idx, std_enable, std_registrar, std_reg_port,
                               std_proxy, std_proxy_port, std_dispname, std_username, std_authid, std_password,
                               std_expires, std_reg_interval, gb_enable, gb_registrar, gb_reg_port, serverid,
                               serverdomain, gb_username, gb_authid, gb_password, gb_expires, livetime, hbtime, hbcount,
                               gb_reg_interval, sip_version))),

    // The link to a video management system: its stream, and its motion detection in a part of the picture.
    ENSURE_BY(per_channel, platform.genetec, (always("idx", 1), outer("chan_no")), 66, "db_get_genetec_config",
              "db_save_genetec_config",
              .says = {.insert = "insert into %T err\n", .load_key = " db_get_genetec_config chan_no(%d) err !\n"},
              .fill = SQL("insert into genetec_config(idx,chan_no,serial_port,genetec_mjpeg_quality,genetec_motion_sensitivity,motion_roi_x0,motion_roi_y0,motion_roi_x1,motion_roi_y1,motion_on_threshold,motion_off_threshold) values(%d,%d,0,0,0,0.0,0.0,0.0,0.0,0,0);"),
              .save = SAVE("update genetec_config set serial_port = %d, genetec_mjpeg_quality = %d, genetec_motion_sensitivity = %d, motion_roi_x0 = %f, motion_roi_y0 = %f, motion_roi_x1 = %f, motion_roi_y1 = %f, motion_on_threshold = %d, motion_off_threshold = %d where idx = %d and chan_no = %d;",
                           FIELDS(serial_port, genetec_mjpeg_quality, genetec_motion_sensitivity, motion_roi_x0,
                                  motion_roi_y0, motion_roi_x1, motion_roi_y1, motion_on_threshold,
                                  motion_off_threshold))),

    // The items that the camera is listed under in a catalogue; the first row holds how many there are.
    ENSURE(list, platform.catalog.item_id, 125, "db_get_catalog_config", "db_save_catalog_config",
           .fill = SQL("insert into catalog_config(idx, item_num, item_id) values(%d, 0, '0');"),
           .save = PUTS(PUT("update catalog_config set item_id = '%s' where idx = %d;", ROW_ITSELF("item_id")),
                        PUT_FOR(1, 1, "update catalog_config set item_num=%d where idx = 1;",
                                ELSEWHERE_ONCE(platform.catalog.item_num)))),

    // The platform that the camera registers with.
    REPLACE(single_row, platform.vemta_reg, 162, "db_get_vemta_reg_config", "db_save_vemta_reg_config",
            .save = SAVE("replace into vemta_reg_param (idx, enable, cms_ipv4addr, cms_ipv6addr, cms_port, dev_id, address_type, domain_name) values(1, %d, %u, '%q', %d, '%q', %d, '%q');",
                         FIELDS(enable, cms_ipv4addr), COLONS(cms_ipv6addr),
                         FIELDS(cms_port, dev_id, address_type, domain_name))),

    // Whether the camera is controlled by a central geographic information system.
    REPLACE(single_row, platform.gis_control, 202, "db_get_gis_centralized_control_cfg",
            "db_set_gis_centralized_control_cfg",
            .save = SAVE("replace into gis_centralized_control_cfg_table (idx, ctrl_mode, timeout) values(1, %d, %d);",
                         FIELDS(ctrl_mode, timeout))),
};

// Servers that it uses, and the way to them.
constexpr Table kServerTables[] = {
    // The SOCKS proxy.
    REPLACE(single_row, platform.socks, 128, "db_get_socks_param", "db_save_socks_param",
            .save = SAVE("replace into socks_param (idx, socks_enable, socks_type, server_port, server_family, server_addr, user_name, passwd) values(1, %d, %d, %d, %d, '%q', '%q', '%q');",
                         FIELDS(socks_enable, socks_type, server_port, server_family, server_addr, user_name, passwd)),
            .unstored = UNSTORED(Unstored{"local_ip_v4", kLocalAddress}, Unstored{"local_ip_v6", kLocalAddress},
                                 Unstored{"local_netmask_v4", kLocalAddress},
                                 Unstored{"local_netmask_v6", kLocalAddress})),

    // The local networks that are reached without the proxy.
    REPLACE(list, platform.socks_local_ip, 129, "db_get_socks_local_ip", "db_save_socks_local_ip",
            .says = {.load_row = "invalid idx: %d\n"},
            .save = SAVE("replace into socks_local_ip (idx, local_ip_v4, local_ip_v6, local_netmask_v4, local_netmask_v6) values(%d, %u, '%s', %u, '%s');",
                         F(local_ip_v4), COLONS(local_ip_v6), F(local_netmask_v4), COLONS(local_netmask_v6))),

    // The storage in a cloud, and the pools that the camera has there.
    REPLACE(single_row, platform.cloud_storage, 176, "db_get_cloud_storage_cfg", "db_save_cloud_storage_cfg",
            .save = SAVE("replace into cloud_storage_cfg (idx, b_enable, ipv4_addr, ipv6_addr, port_no, usrname, passwd, cloud_pool_id) values(1, %d, %u, '%s', %d, '%s', '%s', '%s');",
                         FIELDS(b_enable, ipv4_addr), COLONS(ipv6_addr), FIELDS(port_no, usrname, passwd),
                         COLONS(cloud_pool_id))),

    // The server of the private protocol.
    REPLACE(single_row, platform.private_info, 224, "db_get_private_info_cfg", "db_set_private_info_cfg",
            .save = SAVE("replace into private_info_cfg (idx, b_enable, address, address_type, private_port, interval, server_type, encrypt_enable, algorithm_type, secret_key_len, secret_key, index_code) values(1, %d, '%q', %d, %d, %d, %d, %d, %d, %d, '%q', '%q');",
                         FIELDS(b_enable, address, address_type, private_port, interval, server_type, encrypt_enable,
                                algorithm_type, secret_key_len, secret_key, index_code))),

    // The server that previews are pushed to.
    REPLACE(single_row, platform.push_server, 253, "db_get_push_org_preview_server_cfg",
            "db_set_push_org_preview_server_cfg",
            .save = SAVE("replace into push_org_preview_server_config (idx, addFormat, hostName, ipv4addr, ipv6addr, portNum) values(1, %d, '%q', %u, '%q', %d);",
                         FIELDS(addFormat, hostName, ipv4addr), COLONS(ipv6addr), F(portNum))),
};

// Applications that it runs for others.
constexpr Table kApplicationTables[] = {
    // The applications that are installed on the open platform.
    REPLACE(list, platform.open_app, 252, "db_get_open_platformat_app_param_cfg",
            "db_set_open_platformat_app_param_cfg",
            .says = {.load_row = " db_get_open_platformat_app_param_cfg idx(%d) err\n"},
            .save = SAVE("replace into open_platformat_app_param_config (idx, packagename, appname, shellfile, appid, menuname, linkPath, version, vendor, package_path, run_status, app_type, licence_installed) values(%d, '%q', '%q', '%q', '%q', '%q', '%q', '%q', '%q', '%q', %d, %d, %d);",
                         FIELDS(packagename, appname, shellfile, appid, menuname, linkPath, version, vendor,
                                package_path, run_status, app_type, licence_installed))),
};

// Who may reach the camera.
constexpr Table kAccessTables[] = {
    // The security levels, and which services are open.
    REPLACE(single_row, platform.security, 160, "db_get_security_config", "db_save_security_config",
            .says = {.write = "SQL error:%s\n"},
            .save = SAVE("replace into security_config (idx, security_level, cmdcheck_level, loginlevel, web_auth, ssh_enable, illegal_login_lock, active_status, https_enable) values(1, %d, %d, %d, %d, %d, %d, %d, %d);",
                         FIELDS(security_level, cmdcheck_level, loginlevel, web_auth, ssh_enable, illegal_login_lock,
                                active_status, https_enable))),

    // The login lock policy, the password rules, and the version of the field encryption in use.
    REPLACE(single_row, sec_lock_auth, 187, "db_get_sec_lock_auth_db_info", "db_set_sec_lock_auth_db_info",
            .says = {.write = "SQL error:\n"}, .encryption_word = true,
            .save = SAVE("replace into sec_lock_auth_db_info (idx, lockcount, locktype, lockipcount, locktime, minpwdlen, maxpwdlen, complexity, db_enc_version) values(1, %u, %u, %u, %u, %u, %u, %u, %u);",
                         FIELDS(lockcount, locktype, lockipcount, locktime, minpwdlen, maxpwdlen, complexity,
                                db_enc_version))),

    // The RSA keys of ONVIF advanced security.
    TOP_UP(list, platform.onvif_security.key, 197, "db_get_onvif_adsecurity_key_param",
           "db_save_onvif_adsecurity_key_param",
           .fill = SQL("insert into onvif_adsecurity_key(idx, rsakey_id,hasprivatekey,externally_gen,rsakey_status,ref_counter,rsakeyalias)values (%d,0,0,0,0,0,' ');"),
           .save = SAVE("update onvif_adsecurity_key set rsakey_id = %d,hasprivatekey = %d,externally_gen = %d,rsakey_status = %d,ref_counter = %d,rsakeyalias = '%s' where idx = %d;",
                        FIELDS(rsakey_id, hasprivatekey, externally_gen, rsakey_status, ref_counter, rsakeyalias))),

    // Its certificates.
    TOP_UP(list, platform.onvif_security.cert, 198, "db_get_onvif_adsecurity_cert_param",
           "db_save_onvif_adsecurity_cert_param",
           .fill = SQL("insert into onvif_adsecurity_cert(idx, cert_id,rsakey_id,ref_counter,certalias)values (%d,0,0,0,' ');"),
           .save = SAVE("update onvif_adsecurity_cert set cert_id = %d,rsakey_id = %d,ref_counter = %d,certalias = '%s' where idx = %d;",
                        FIELDS(cert_id, rsakey_id, ref_counter, certalias))),

    // Its certification paths: three certificates each.
    TOP_UP(list, platform.onvif_security.certpath, 199, "db_get_onvif_adsecurity_certpath_param",
           "db_save_onvif_adsecurity_certpath_param",
           .fill = SQL("insert into onvif_adsecurity_certpath(idx, certpath_id,ref_counter,certid_str,certpathalias)values (%d,0,0,'0,0,0',' ');"),
           .save = SAVE("update onvif_adsecurity_certpath set certpath_id = %d,ref_counter = %d,certid_str = '%s',certpathalias = '%s' where idx = %d;",
                        FIELDS(certpath_id, ref_counter), CODED(certid_str, kCertificates), F(certpathalias))),

    // The path that its TLS server shows.
    TOP_UP(single_row, platform.onvif_security, 200, "db_get_onvif_adsecurity_tlsserver_param",
           "db_save_onvif_adsecurity_tlsserver_param",
           .fill = SQL("insert into onvif_adsecurity_tlsserver(idx, certpath_id)values (%d,0);"),
           .save = SAVE("update onvif_adsecurity_tlsserver set certpath_id = %d where idx = %d;",
                        as("certpath_id", F(tlsserver_certpath_id)))),

    // Its passphrases.
    TOP_UP(list, platform.onvif_security.passphrase, 201, "db_get_onvif_adsecurity_passphrase_param",
           "db_save_onvif_adsecurity_passphrase_param",
           .fill = SQL("insert into onvif_adsecurity_passphrase(idx, passphrase_id,passphrasealias,passphrasecontent)values (%d,0,' ','');"),
           .save = SAVE("update onvif_adsecurity_passphrase set passphrase_id = %d,passphrasealias = '%s',passphrasecontent = '%s' where idx = %d;",
                        FIELDS(passphrase_id, passphrasealias, passphrasecontent))),

    // Whether streams are encrypted.
    REPLACE(single_row, platform, 234, "db_get_stream_encrypt_cfg", "db_set_stream_encrypt_cfg",
            .save = SAVE("replace into stream_encrypt_cfg (idx, stream_encrypt_enable) values(1, %d);",
                         F(stream_encrypt_enable))),
};

// The mobile network.
constexpr Table kMobileTables[] = {
    // The modem: how it dials, and on which days and hours.
    ENSURE_BY(single_row, platform.lte_4g, (inner("idx")), 173, "db_get_4g_lte_param", "db_save_4g_lte_param",
              .says = {.insert = "insert into %T err\n", .load_row = "invalid idx = %d\n", .part = "%F error: \n"},
              .fill = SQL("insert into lte_4g_param(idx, by_enable_3g, by_diak_methold, by_switch_methold, prior_mode, off_line_time, dial_num, username, password, apn_name, UIMCardNum, n_mtu_size, verify_proto, max_bit_ul, max_bit_dl, by_traffic_class, b_enable_sms_alarm, l_sms_read_stat, whole_day, dial_type, begin_end_time, operator, sms_receipt_operation) values(%d, 0, 0, 0, 0, 0, '', '', '', '', '', 0, 0, 0, 0, 0, 0, 0, '', '', '', 0, 0);"),
              .save = SAVE("update lte_4g_param set by_enable_3g = %d, by_diak_methold = %d, by_switch_methold = %d, prior_mode = %d, off_line_time = %d, dial_num = '%q', username = '%q', password = '%q', apn_name = '%q', UIMCardNum = '%q', n_mtu_size = %d, verify_proto = %d, max_bit_ul = %d, max_bit_dl = %d, by_traffic_class = %d, b_enable_sms_alarm = %d, l_sms_read_stat = %d, whole_day = '%q', dial_type = '%q', begin_end_time = '%q', operator = %d, sms_receipt_operation = %d where idx = %d;",
                           FIELDS(by_enable_3g, by_diak_methold, by_switch_methold, prior_mode, off_line_time),
                           ENCRYPTED(dial_num, 128), ENCRYPTED(username, 128), ENCRYPTED(password, 128),
                           ENCRYPTED(apn_name, 128), ENCRYPTED(UIMCardNum, 128),
                           FIELDS(n_mtu_size, verify_proto, max_bit_ul, max_bit_dl, by_traffic_class,
                                  b_enable_sms_alarm, l_sms_read_stat),
                           COLONS(whole_day), COLONS(dial_type), COLONS(begin_end_time), as("operator", F(operator_)),
                           F(sms_receipt_operation))),

    // Who may command the camera by short message, and which alarms each is sent.
    ENSURE(list, platform.sms_whitelist, 174, "db_get_4g_sms_whitelist", "db_save_4g_sms_whitelist",
           .fill = SQL("insert into sms_4g_whitelist(idx, byWhiteList, iPhoneCfg, iAlarmHandler) values (%d, '', 0, 0);"),
           .save = SAVE("update sms_4g_whitelist set byWhiteList = '%q', iPhoneCfg = %d, iAlarmHandler = %llu where idx = %d;",
                        FIELDS(byWhiteList, iPhoneCfg, iAlarmHandler))),
};

// The wireless network that the camera offers.
constexpr Table kWirelessTables[] = {
    REPLACE(single_row, platform.softap, 218, "db_get_softap_param_config", "db_save_softap_param_config",
            .says = {.write = "%F failed(%m)\n"},
            .save = SAVE("replace into softap_param (idx, ssid, softap_enable, broadcast_enable, max_num_sta, security, softap_ipv4_addr, softap_ipv6_addr, softap_ipv4_mask, softap_ipv6_mask, dhcp_enable, dhcp_start_ipv4, dhcp_start_ipv6, dhcp_end_ipv4, dhcp_end_ipv6, dns1_ipv4, dns1_ipv6, dns2_ipv4, dns2_ipv6, gateway_ipv4, gateway_ipv6, encrypt, wpa_passphrase) values(1, '%q', %d, %d, %d, %d, %u, '%s', %u, '%s', %d, %u, '%s', %u, '%s', %u, '%s', %u, '%s', %u, '%s', %d, '%q');",
                         ENCRYPTED(ssid, 128), FIELDS(softap_enable, broadcast_enable, max_num_sta, security),
                         F(softap_ipv4_addr), COLONS(softap_ipv6_addr), F(softap_ipv4_mask), COLONS(softap_ipv6_mask),
                         FIELDS(dhcp_enable, dhcp_start_ipv4), COLONS(dhcp_start_ipv6), F(dhcp_end_ipv4),
                         COLONS(dhcp_end_ipv6), F(dns1_ipv4), COLONS(dns1_ipv6), F(dns2_ipv4), COLONS(dns2_ipv6),
                         F(gateway_ipv4), COLONS(gateway_ipv6), F(encrypt),
                         loaded_up_to(63, ENCRYPTED(wpa_passphrase, 256)))),
};

// The consumer cloud service.
constexpr Table kCloudTables[] = {
    // Where its servers are, and what the camera has registered there.
    REPLACE(single_row, platform.zorvy.config, 146, "db_get_zorvy_config", "db_save_zorvy_config",
            .save = SAVE("replace into zorvy_config (idx, b_enable, lbs_server, lbs_port, alarm_server, alarm_port, permanent_code, enable_permanent, enable_cloud, region, permanent_code_change_count, b_permanent_code_modify) values(1, %d, '%s', %d, '%s', %d, '%s', %d, %d, %d, %d, %d);",
                         FIELDS(b_enable, lbs_server, lbs_port, alarm_server, alarm_port),
                         credential(F(permanent_code)),
                         FIELDS(enable_permanent, enable_cloud, region, permanent_code_change_count,
                                b_permanent_code_modify))),

    // When the camera is armed.
    REPLACE(single_row, platform.zorvy.defense_plan, 147, "db_get_zorvy_defense_plan_config",
            "db_save_zorvy_defense_plan_config",
            .save = SAVE("replace into zorvy_defense_plan_config (idx, enable, begin_end_time) values(1, %d, '%s');",
                         F(enable), COLONS(begin_end_time))),

    // When it goes on line by itself.
    REPLACE(single_row, platform.zorvy.auto_online_plan, 148, "db_get_zorvy_auto_online_plan_config",
            "db_save_zorvy_auto_online_plan_config",
            .save = SAVE("replace into zorvy_auto_online_plan_config (idx, enable, begin_end_time) values(1, %d, '%s');",
                         F(enable), COLONS(begin_end_time))),

    // How often motion was detected in each hour of a day of the week.
    REPLACE_BY(list, platform.zorvy.motion_day, (inner("weekday")), 149, "db_get_zorvy_motion_detection_times",
               "db_save_zorvy_motion_detection_times",
               .save = SAVE("replace into zorvy_motion_detection_times (weekday, report_time, reported_flag, motdet_num) values(%d, %ld, %d, '%s');",
                            FIELDS(report_time, reported_flag), COLONS(motdet_num))),

    // How alarms are reported.
    REPLACE(single_row, platform.zorvy.alarm, 150, "db_get_zorvy_alarm_config", "db_save_zorvy_alarm_config",
            .save = SAVE("replace into zorvy_alarm_config (idx, alarm_mode, alarm_span, alarm_sound_mode) values(1, %d, %d, %d);",
                         FIELDS(alarm_mode, alarm_span, alarm_sound_mode))),

    // Whether events are recorded there.
    REPLACE(single_row, platform.zorvy, 151, "db_get_zorvy_event_cloudstorage_config",
            "db_save_zorvy_event_cloudstorage_config",
            .save = SAVE("replace into zorvy_event_cloudstorage_config (idx, enable_event_cloudstorage) values(1, %d);",
                         F(enable_event_cloudstorage))),

    // When it records there.
    REPLACE(single_row, platform.zorvy, 152, "db_get_zorvy_cloud_record_plan_config",
            "db_save_zorvy_cloud_record_plan_config",
            .save = SAVE("replace into zorvy_cloud_record_plan_config (idx, enable, update_date, begin_end_time) values(1, %d, %d, '%s');",
                         FIELDS(cloud_record_plan.enable, update_date), COLONS(cloud_record_plan.begin_end_time))),

    // Its two streams.
    REPLACE(list, platform.zorvy.stream, 153, "db_get_zorvy_stream_config", "db_save_zorvy_stream_config",
            .save = SAVE("replace into zorvy_stream_config (idx, stream_type, bit_type, video_enc_complexity, video_enc_type, reslution, stream_attr, iframe_interval, max_bit_rate, video_frame_rate, quality, bset_enc_type, bset_aud_type, encoder_type, audio_type, bframe_num, enable_svc) values(%d, %d, %d, %d, %d, %d, %d, %d, %d, %d, %d, %d, %d, %d, %d, %d, %d);",
                         FIELDS(stream_type, bit_type, video_enc_complexity, video_enc_type, reslution, stream_attr,
                                iframe_interval, max_bit_rate, video_frame_rate, quality, bset_enc_type, bset_aud_type,
                                encoder_type, audio_type, bframe_num, enable_svc))),

    // The account that the camera belongs to.
    REPLACE(single_row, platform.zorvy, 154, "db_get_zorvy_user_info_config", "db_save_zorvy_user_info_config",
            .save = SAVE("replace into zorvy_user_info_config (idx, user_id) values(1, '%s');", F(user_id))),
};

// The event snapshots of the platform registration.  Its events are of six classes, the process types, of which each
// table has some: events of a source (a chain) and a line, of a source, and of no source.  An entry is one class,
// whose rows lie in a member of their own; a table's functions move its entries one after another.
namespace events {

#define EVENT_CLASS(shape, member, keys, number, function, says_, insert, query, device_rows_, update, ...)    \
    ENSURE_BY(shape, platform.vm.member, keys, number, "db_get_" function, "db_save_" function, .says = says_, \
              .fill = SQL(insert), .save = SAVE(update, __VA_ARGS__), .load = SQL(query),                      \
              .device_rows = DeviceCount::device_rows_)

constexpr Messages kLine{.load_key = "chain_no:%o or line_no:%r error\n",
                         .load_row = "chain_no:%o or line_no:%r error\n"};
constexpr Messages kChain{.load_row = "chain_no:%d error\n"};

#define LINES(type, member, number, function, ...)                                                                 \
    EVENT_CLASS(grid, member, (only("process_type", type), outer("chain_no"), inner("line_no")), number, function, \
                kLine, __VA_ARGS__)
#define CHAINS(type, member, ...) \
    EVENT_CLASS(list, member, (only("process_type", type), inner("chain_no"), always("line_no", 1)), 0, __VA_ARGS__)
#define NO_CHAIN(type, member, ...)                                                                               \
    EVENT_CLASS(single_row, member, (only("process_type", type), always("chain_no", 1), always("line_no", 1)), 0, \
                __VA_ARGS__)

// The updates tell a row by process type, chain and line, by process type and chain, and by process type alone.
#define SNAPSHOTS(number, function, insert, query, by_line, by_chain, by_type, ...)            \
    LINES(1, snapshot1, number, function, insert, query, event_sources, by_line, __VA_ARGS__), \
        LINES(2, snapshot2, 0, function, insert, query, event_sources, by_line, __VA_ARGS__),  \
        CHAINS(3, snapshot3, function, kChain, insert, query, none, by_chain, __VA_ARGS__),    \
        CHAINS(4, snapshot4, function, kChain, insert, query, none, by_chain, __VA_ARGS__),    \
        NO_CHAIN(5, snapshot5, function, kSays, insert, query, none, by_type, __VA_ARGS__),    \
        NO_CHAIN(6, snapshot6, function, kSays, insert, query, none, by_type, __VA_ARGS__)

// The chains that an event sets off: one number for each source.
#define TRIGGERS(number, function, insert, query, by_line, by_chain, by_type, ...)                   \
    LINES(2, trigger2, number, function, insert, query, event_sources, by_line, __VA_ARGS__),        \
        CHAINS(3, trigger3, function, kChain, insert, query, listed_sources, by_chain, __VA_ARGS__), \
        CHAINS(4, trigger4, function, kChain, insert, query, listed_sources, by_chain, __VA_ARGS__), \
        NO_CHAIN(5, trigger5, function, kSays, insert, query, listed_sources, by_type, __VA_ARGS__), \
        NO_CHAIN(6, trigger6, function, kSays, insert, query, listed_sources, by_type, __VA_ARGS__)

// The segments of a week, day by day: whether each is used, and when it starts and stops.
constexpr ListItem kUsed[] = {{offsetof(VmSegment, b_used), Kind::i32}};
constexpr ListItem kTimes[] = {{offsetof(VmSegment, start), Kind::u32}, {offsetof(VmSegment, stop), Kind::u32}};
template <class Week>
constexpr uint16_t kSegments = sizeof(Week) / sizeof(VmSegment);
template <class Week, const auto& Items>
constexpr TextCodec kWeek{encode_list, decode_list, Items, kSegments<Week>, sizeof(VmSegment)};

#define SEGMENTS(type, member, number)                                                                                                  \
    EVENT_CLASS(list, member, (only("process_type", type), inner("chain_no")), number, "vm_snapshot_schedtime_config",                  \
                kChain,                                                                                                                 \
                "insert into vm_snapshot_time_segment(process_type, chain_no, b_used, start_stop_time) values(%d, %d, '', '');",        \
                "select * from vm_snapshot_time_segment where process_type = %d;", event_sources,                                       \
                "update vm_snapshot_time_segment set b_used = '%s', start_stop_time = '%s' where process_type = %d and chain_no = %d;", \
                coded(ROW_ITSELF("b_used"), kWeek<Row, kUsed>),                                                                         \
                coded(ROW_ITSELF("start_stop_time"), kWeek<Row, kTimes>))

constexpr Table kTables[] = {
    SNAPSHOTS(163, "vm_snapshot_normal_param",
              "insert into vm_snapshot_normal_param(process_type, chain_no, line_no, enable, stor_type, snapshot_type) values(%d, %d, %d, 0, 0, 0);",
              "select * from vm_snapshot_normal_param where process_type = %d;",
              "update vm_snapshot_normal_param set enable = %d, stor_type = %d, snapshot_type = %d where process_type = %d and chain_no = %d and line_no = %d;",
              "update vm_snapshot_normal_param set enable = %d, stor_type = %d, snapshot_type = %d where process_type = %d and chain_no = %d;",
              "update vm_snapshot_normal_param set enable = %d, stor_type = %d, snapshot_type = %d where process_type = %d;",
              FIELDS(enable, stor_type, snapshot_type)),

    SNAPSHOTS(164, "vm_snapshot_compression_param",
              "insert into vm_snapshot_compression_param(process_type, chain_no, line_no, revolution, quality, frequency, interval) values(%d, %d, %d, 0, 0, 0, 0);",
              "select * from vm_snapshot_compression_param where process_type = %d;",
              "update vm_snapshot_compression_param set revolution = %d, quality = %d, frequency = %d, interval = %d where process_type = %d and chain_no = %d and line_no = %d;",
              "update vm_snapshot_compression_param set revolution = %d, quality = %d, frequency = %d, interval = %d where process_type = %d and chain_no = %d;",
              "update vm_snapshot_compression_param set revolution = %d, quality = %d, frequency = %d, interval = %d where process_type = %d;",
              FIELDS(revolution, quality, frequency, interval)),

    SEGMENTS(1, segment1, 165),
    SEGMENTS(2, segment2, 0),

    TRIGGERS(166, "vm_trigger_chain_param",
             "insert into vm_trigger_chain_param(process_type, chain_no, line_no, trigger_chain) values(%d, %d, %d, '');",
             "select * from vm_trigger_chain_param where process_type = %d;",
             "update vm_trigger_chain_param set trigger_chain = '%s' where process_type = %d and chain_no = %d and line_no = %d;",
             "update vm_trigger_chain_param set trigger_chain = '%s' where process_type = %d and chain_no = %d;",
             "update vm_trigger_chain_param set trigger_chain = '%s' where process_type = %d;",
             each_source(COLONS(trigger_chain))),
};

}  // namespace events

constexpr std::span<const Table> kGroups[] = {kCentreTables, kServerTables,   kApplicationTables, kAccessTables,
                                              kMobileTables, kWirelessTables, kCloudTables,       events::kTables};

}  // namespace

const Domain kPlatformTables = kGroups;

}  // namespace dbshell
