// The tables of the network interface and of the services on it.
#include "catalogue.h"

namespace {

// What most tables of the interface log; a null load_row skips a row out of range without a message.
constexpr Messages interface_says(const char* write, const char* load_row = nullptr) {
    return {.write = write, .open = " db_query_open_v2 err\n", .load_row = load_row};
}

// What the tables of the services log when their rows cannot be counted or written.
constexpr Messages service_says(const char* write = "SQL error:\n") {
    return {.write = write, .count = " db_query_row_num err\n"};
}

constexpr Table kTables[] = {
    // The wired and wireless interface: hardware addresses, link, address assignment and the SSID.
    TABLE(single_row, network.netconfig, .number = 31, .get = "db_get_netconfig", .set = "db_save_netconfig",
          .says = {.write = "db_save_netconfig failed\n"}, .graded = true,
          .count = SQL("select count(*) from netconfig_table;"),
          .fill = SQL("insert into "
                      "netconfig_table(idx,nictype,mac_addr,wifi_mac,mtu,media_type,dhcp_enable,"
                      "auto_dns_enable,nic_mode,mana_mode,security,ssid,eth0_dhcp_enable,ipv6_mode, "
                      "multi_discover_mode, wifi_enable) values(%d,0,'','',0,0,0,0,0,0,0,'',0,0, 0, 0);"),
          .save = SAVE("update netconfig_table set mac_addr = '%s', wifi_mac = '%s', mtu = %d, media_type = "
                       "%d, dhcp_enable = %d, auto_dns_enable =%d, nic_mode =%d,mana_mode = %d, security = "
                       "%d, ssid = '%q', eth0_dhcp_enable = %d, ipv6_mode = %d, multi_discover_mode = %d , "
                       "wifi_enable = %d where idx = %d;",
                       DIGITS(mac_addr), DIGITS(wifi_mac),
                       FIELDS(mtu, media_type, dhcp_enable, auto_dns_enable, nic_mode, mana_mode, security),
                       ENCRYPTED(ssid, 128),
                       FIELDS(eth0_dhcp_enable, ipv6_mode, multi_discover_mode, wifi_enable))),

    // How the WEP keys are used; the one row has no key column.
    TABLE_BY(
        single_row, network.wep_encrypt, (), .number = 32, .get = "db_get_wep_encrypt",
        .set = "db_save_wep_encrypt",
        .says = {.write = "db_save_wep_encrypt failed\n",
                 .count = "db_query_row_num err !\n",
                 .open = " db_query_open_v2 err\n",
                 .empty = " db_query_rec_count_v2 err\n"},
        .graded = true, .count = SQL("select count(*) from wep_encrypt_info;"),
        .fill =
            SQL("insert into wep_encrypt_info (key_index, key_len, key_type, auth_mode) values(0, 0, 0, 0);"),
        .save =
            SAVE("update wep_encrypt_info set key_index = %u, key_len = %u, key_type = %u, auth_mode = %u;",
                 FIELDS(key_index, key_len, key_type, auth_mode))),

    // The four WEP keys, each byte as a number, the whole text encrypted.
    TABLE(list, network.wep_key, .number = 33, .get = "db_get_wep_key", .set = "db_save_wep_key",
          .says = interface_says("db_execsql failed\n", "invalid idx value: %d\n"), .graded = true,
          .save = SAVE("replace into wep_key_list (idx, key_info) values(%d, '%q');",
                       encrypted(coded(ROW_ITSELF("key_info"), kArray<Row, ':'>), 512))),

    // The addresses: sixteen rows of a fixed meaning, each with the columns that its statement names.
    TABLE_BY(
        list, network.ipaddr, (inner("idx"), inner("use_mod")), .number = 35, .get = "db_get_ipaddr_list",
        .set = "db_save_ipaddr_list",
        .says = {.write = "db_save_ipaddr_list failed \n",
                 .open = " db_query_open_v2 err\n",
                 .empty = " db_query_rec_count_v2 err\n"},
        .graded = true, .count = SQL("select count(*) from ipaddr_list;"),
        .fill = PUTS(
            PUT_FOR(1, 5,
                    "insert into ipaddr_list(target,use_mod,ipv4addr,ipv6addr,ipv4mask,ipv6mask,ipport,name) "
                    "values(1,%d,0,'',0,'',0,'');"),
            PUT_FOR(6, 16,
                    "insert into ipaddr_list(target,use_mod,ipv4addr,ipv6addr,ipv4mask,ipv6mask,ipport,name) "
                    "values(2,%d,0,'',0,'',0,'');")),
        .save =
            PUTS(PUT_FOR(1, 1,
                         "update ipaddr_list set ipv4addr = %u,ipv6addr = '%s',ipv4mask = %u,ipv6mask = "
                         "'%s', ipport = %d where idx = 1;",
                         F(ipv4addr), COLONS(ipv6addr), F(ipv4mask), COLONS(ipv6mask), F(ipport)),
                 PUT_FOR(2, 2,
                         "update ipaddr_list set ipv4addr = %u,ipv6addr = '%s',ipv4mask = %u,ipv6mask = '%s' "
                         "where idx = 2;",
                         F(ipv4addr), COLONS(ipv6addr), F(ipv4mask), COLONS(ipv6mask)),
                 PUT_FOR(3, 3,
                         "update ipaddr_list set ipv4addr = %u,ipv6addr = '%s',ipv4mask = %u,ipv6mask = '%s' "
                         "where idx = 3;",
                         F(ipv4addr), COLONS(ipv6addr), F(ipv4mask), COLONS(ipv6mask)),
                 PUT_FOR(4, 4,
                         "update ipaddr_list set ipv4addr = %u,ipv6addr = '%s',ipv4mask = %u,ipv6mask = '%s' "
                         "where idx = 4;",
                         F(ipv4addr), COLONS(ipv6addr), F(ipv4mask), COLONS(ipv6mask)),
                 PUT_FOR(5, 5, "update ipaddr_list set ipv4addr = %u,ipv6addr = '%s' where idx = 5;",
                         F(ipv4addr), COLONS(ipv6addr)),
                 PUT_FOR(6, 6, "update ipaddr_list set ipv6addr = '%s', ipport = %d where idx = 6;",
                         COLONS(ipv6addr), F(ipport)),
                 PUT_FOR(7, 7, "update ipaddr_list set ipv6addr = '%s', ipport = %d where idx = 7;",
                         COLONS(ipv6addr), F(ipport)),
                 PUT_FOR(8, 8, "update ipaddr_list set ipv6addr = '%s', ipport = %d where idx = 8;",
                         COLONS(ipv6addr), F(ipport)),
                 PUT_FOR(9, 9,
                         "update ipaddr_list set ipv4addr = %u,ipv6addr = '%s',ipv4mask = %u,ipv6mask = '%s' "
                         "where idx = 9;",
                         F(ipv4addr), COLONS(ipv6addr), F(ipv4mask), COLONS(ipv6mask)),
                 PUT_FOR(10, 10,
                         "update ipaddr_list set ipv4addr = %u,ipv6addr = '%s',ipport = %d where idx = 10;",
                         F(ipv4addr), COLONS(ipv6addr), F(ipport)),
                 PUT_FOR(11, 11,
                         "update ipaddr_list set ipv4addr = %u,ipv6addr = '%s',ipport = %d where idx = 11;",
                         F(ipv4addr), COLONS(ipv6addr), F(ipport)),
                 PUT_FOR(12, 12,
                         "update ipaddr_list set ipv4addr = %u,ipv6addr = '%s',ipport = %d where idx = 12;",
                         F(ipv4addr), COLONS(ipv6addr), F(ipport)),
                 PUT_FOR(13, 13, "update ipaddr_list set ipv6addr = '%s' where idx = 13;", COLONS(ipv6addr)),
                 PUT_FOR(14, 14, "update ipaddr_list set ipv4addr = %u,ipv6addr = '%s' where idx = 14;",
                         F(ipv4addr), COLONS(ipv6addr)),
                 PUT_FOR(15, 15,
                         "update ipaddr_list set ipv4addr = %u,ipv6addr = '%s',ipport = %d where idx = 15;",
                         F(ipv4addr), COLONS(ipv6addr), F(ipport)),
                 PUT_FOR(16, 16,
                         "update ipaddr_list set ipv4addr = %u,ipv6addr = '%s',ipport = %d where idx = 16;",
                         F(ipv4addr), COLONS(ipv6addr), F(ipport)))),

    // The ports that the services listen on; type 4 is a range.
    TABLE_BY(
        list, network.local_port, (inner("port_type"), inner("idx")), .number = 36,
        .get = "db_get_local_port", .set = "db_save_local_port",
        .says = {.write = "db_save_local_port failed\n",
                 .open = " db_query_open_v2 err\n",
                 .empty = " db_query_rec_count_v2 err\n",
                 .load_row = "unknown port_type: %d\n"},
        .graded = true, .count = SQL("select count(*) from local_port_list;"),
        .fill = SQL(
            "insert into local_port_list(idx,port_mode,port_type,start_port,end_port) values(%d,1,%d,0,0);"),
        .save = PUTS(
            PUT_FOR(1, 3, "update local_port_list set start_port = %d where port_type = %d;", F(start_port)),
            PUT_FOR(4, 4, "update local_port_list set start_port = %d, end_port = %d where port_type = %d;",
                    FIELDS(start_port, end_port)),
            PUT_FOR(5, 5, "update local_port_list set  start_port = %d where port_type = %d;",
                    F(start_port)))),

    // The same for the extended set of ports.
    TABLE_BY(
        list, service.local_port_ext, (inner("port_type"), inner("idx")), .number = 37,
        .get = "db_get_local_port_ext", .set = "db_save_local_port_ext",
        .says = {.write = "db_save_local_port_ext failed\n",
                 .open = "db_query_open_v2 err\n",
                 .empty = " db_query_rec_count_v2 err\n",
                 .load_row = "unknown port_type: %d\n"},
        .graded = true, .count = SQL("select count(*) from local_port_list_ext;"),
        .fill = SQL("insert into local_port_list_ext (idx, port_mode, port_type, start_port, end_port) "
                    "values(%d, 1, %d, 0, 0);"),
        .save = PUTS(
            PUT_FOR(1, 3, "update local_port_list_ext set start_port = %d where port_type = %d;",
                    F(start_port)),
            PUT_FOR(4, 4,
                    "update local_port_list_ext set start_port = %d, end_port = %d where port_type = %d;",
                    FIELDS(start_port, end_port)),
            PUT_FOR(5, 5, "update local_port_list_ext set  start_port = %d where port_type = %d;",
                    F(start_port)))),

    // The network disks: server, directory and kind; the old numeric server address is kept empty.
    TABLE(list, service.net_hd, .number = 38, .get = "db_get_net_hd_config", .set = "db_save_net_hd_config",
          .says = interface_says("db_save_net_hd_config failed\n", "invalid nas_idx: %d\n"), .graded = true,
          .count = SQL("select count(*) from net_hd_config;"),
          .fill = SQL("insert into net_hd_config (idx, hdtype, serveripv4, serveripv6, directory, mount_nfs, "
                      "nas_server_addr, disk_type, iscsi_port) values(%d, 1, 0, '', '', 0, '', 0, 0);"),
          .save = SAVE("update net_hd_config set nas_server_addr = '%q', directory = '%q', mount_nfs = %d, "
                       "disk_type = %d, iscsi_port = %d, serveripv4 = 0, serveripv6 = '' where idx = %d;",
                       FIELDS(nas_server_addr, directory, mount_nfs, disk_type, iscsi_port))),

    // Whether RTSP asks for a login.
    TABLE(single_row, service, .number = 39, .get = "db_get_rtsp_config", .set = "db_save_rtsp_config",
          .says = interface_says("db_save_rtsp_config failed \n"), .graded = true,
          .count = SQL("select count(*) from rtsp_config_table;"),
          .fill = SQL("insert into rtsp_config_table(idx,enable_auth) values(%d,0);"),
          .save = SAVE("update rtsp_config_table set enable_auth = %d where idx = %d;", F(enable_auth))),

    // The mail account and what is sent from it.
    TABLE(single_row, service.email, .number = 40, .get = "get_email_param_from_db",
          .set = "save_email_param_to_db", .says = service_says("update email_config_info error\n"),
          .count = SQL("select count(*) from email_config_info;"),
          .fill =
              SQL("insert into "
                  "email_config_info(idx,user_name,passwd,attachment,server_verify,mail_interval,"
                  "ssl_verify,enabled,subject,verify_type)values (1,'admin','58213',0,0,200,0,1,'email',0);"),
          .save = SAVE(
              "update email_config_info set user_name='%q',passwd='%q',attachment = %d,server_verify = "
              "%d,mail_interval = %d,ssl_verify = %d,enabled = %d,subject = '%q',verify_type = '%d'  where "
              "idx = 1;",
              ENCRYPTED(user_name, 128), ENCRYPTED(passwd, 128),
              FIELDS(attachment, server_verify, mail_interval, ssl_verify, enabled, subject, verify_type))),

    // The mail addresses: three of addr_type 2, then the one of addr_type 1.
    TABLE(list, service.email_addr, .number = 41, .get = "get_email_addr_list_from_db",
          .set = "save_email_addr_list_to_db",
          .says = {.write = "update email_addr_list error\n",
                   .count = " db_query_row_num err\n",
                   .insert = "insert into email_addr_list error\n"},
          .top_up = true, .count = SQL("select count(*) from email_addr_list;"),
          .fill = PUTS(
              PUT_FOR(4, 4,
                      "insert into email_addr_list(idx,name,addr,addr_type)values (%d,'admin','58213',1);"),
              PUT_FOR(1, 3,
                      "insert into email_addr_list(idx,name,addr,addr_type)values (%d,'admin','58213',2);")),
          .save = PUTS(
              PUT_FOR(4, 4, "update email_addr_list set name='%q', addr='%q', addr_type = %d where idx = 4;",
                      ENCRYPTED(name, 128), ENCRYPTED(addr, 256), value("addr_type", 1)),
              PUT_FOR(1, 3, "update email_addr_list set name='%q', addr='%q', addr_type = %d where idx = %d;",
                      ENCRYPTED(name, 128), ENCRYPTED(addr, 256), value("addr_type", 2)))),

    // The code points that mark outgoing packets by their kind.
    TABLE(
        single_row, service.qos, .number = 42, .get = "get_qos_param_from_db", .set = "save_qos_param_to_db",
        .says = {.count = " db_query_row_num err\n"}, .count = SQL("select count(*) from qos_config_info;"),
        .fill = SQL(
            "insert into qos_config_info(idx,manage_dscp,alarm_dscp,video_dscp,audio_dscp,flag,enable)values "
            "(1,0,0,0,0,0,0);"),
        .save = SAVE("update qos_config_info set manage_dscp = %d,alarm_dscp = %d,video_dscp = %d,audio_dscp "
                     "= %d, flag = %d, enable = %d where idx = 1;",
                     FIELDS(manage_dscp, alarm_dscp, video_dscp, audio_dscp, flag, enable))),

    // SNMP: the versions in use and their communities.
    TABLE(single_row, service.snmp, .number = 43, .get = "get_snmp_param_from_db",
          .set = "save_snmp_param_to_db", .says = service_says("update snmp_config_info error\n"),
          .count = SQL("select count(*) from snmp_config_info;"),
          .fill = SQL("insert into snmp_config_info(idx ,enable_snmpv1 ,enable_snmpv2c,enable_snmpv3 "
                      ",read_community ,write_community ,trap_community )values (1,0,0,0,'0','0','0');"),
          .save = SAVE("update snmp_config_info set read_community='%q',write_community='%q',trap_community "
                       "= '%q',enable_snmpv1 = %d,enable_snmpv2c = %d,enable_snmpv3 = %d where idx = 1;",
                       FIELDS(read_community, write_community, trap_community, enable_snmpv1, enable_snmpv2c,
                              enable_snmpv3))),

    // The two users of SNMP version 3.
    TABLE(list, service.snmp_v3user, .number = 44, .get = "get_snmp_v3user_param_from_db",
          .set = "save_snmp_v3user_param_to_db",
          .says = {.write = "update snmp_v3user_info error\n", .count = " db_query_row_num err\n"},
          .top_up = true, .count = SQL("select count(*) from snmp_v3user_info;"),
          .fill = SQL("insert into "
                      "snmp_v3user_info(idx,user_type,user_name,auth_passwd,priv_passwd,auth_algorithm,"
                      "priv_algorithm,security_level)values (%d,0,'0','0','0',0,0,0);"),
          .save = PUTS(
              PUT_FOR(
                  2, 2,
                  "update snmp_v3user_info set user_name='%q',auth_passwd='%q',priv_passwd = '%q',user_type "
                  "= %d,auth_algorithm = %d,priv_algorithm = %d,security_level = %d where idx = 2;",
                  FIELDS(user_name, auth_passwd, priv_passwd, user_type, auth_algorithm, priv_algorithm,
                         security_level)),
              PUT_FOR(
                  1, 1,
                  "update snmp_v3user_info set user_name='%q',auth_passwd='%q',priv_passwd = '%q',user_type "
                  "= %d,auth_algorithm = %d,priv_algorithm = %d,security_level = %d where idx = 1;",
                  FIELDS(user_name, auth_passwd, priv_passwd, user_type, auth_algorithm, priv_algorithm,
                         security_level)))),

    // The camera's login to a switch by 802.1X.
    TABLE(single_row, service.ieee_8021x, .number = 45, .get = "get_ieee_8021x_param_from_db",
          .set = "save_ieee_8021x_param_to_db", .says = service_says("update ieee_8021x_info error\n"),
          .count = SQL("select count(*) from ieee_8021x_info;"),
          .fill = SQL("insert into ieee_8021x_info(idx ,eap_identity ,password ,enable_wpa ,eapol_version "
                      ",eap_type)values (1,'admin','58213',0,0,0);"),
          .save = SAVE("update ieee_8021x_info set eap_identity='%q',password='%q',enable_wpa = "
                       "%d,eapol_version = %d,eap_type = %d where idx = 1;",
                       ENCRYPTED(eap_identity, 128), ENCRYPTED(password, 64),
                       FIELDS(enable_wpa, eapol_version, eap_type))),

    // Time synchronisation by network and by satellite.
    TABLE(single_row, service.ntp, .number = 46, .get = "get_ntp_param_from_db",
          .set = "save_ntp_param_to_db", .says = service_says(),
          .count = SQL("select count(*) from ntp_config_info;"),
          .fill = SQL("insert into ntp_config_info(idx,enable_ntp,interval,timediff_hour,timediff_min, "
                      "satellite_interval)values (1,0,0,0,0, 0);"),
          .save = SAVE("update ntp_config_info set enable_ntp = %d,interval = %d,timediff_hour = "
                       "%d,timediff_min = %d, satellite_interval = %u where idx = 1;",
                       FIELDS(enable_ntp, interval, timediff_hour, timediff_min, satellite_interval))),

    // The dial-up PPP line: number, login and the addresses of both ends.
    TABLE(single_row, service.ppp, .number = 47, .get = "get_ppp_param_from_db",
          .set = "save_ppp_param_to_db", .says = service_says("update ppp_config_info error\n"),
          .count = SQL("select count(*) from ppp_config_info;"),
          .fill = SQL("insert into "
                      "ppp_config_info(idx,phone_number,ppp_attribute,remoteIpv4Addr,remoteIpv6Addr,"
                      "localIpv4Addr,localIpv6Addr,localSubnetMask,username,password,mtu)values "
                      "(1,'0',0,0,'',0,'',0,'admin','58213',255);"),
          .save = SAVE("update ppp_config_info set phone_number = '%q',ppp_attribute = %d,remoteIpv4Addr = "
                       "%u,remoteIpv6Addr = '%s',localIpv4Addr = %u,localIpv6Addr = '%s',localSubnetMask = "
                       "%u,username = '%q',password = '%q',mtu = %d where idx = 1;",
                       FIELDS(phone_number, ppp_attribute, remoteIpv4Addr), COLONS(remoteIpv6Addr),
                       F(localIpv4Addr), COLONS(localIpv6Addr),
                       FIELDS(localSubnetMask, username, password, mtu))),

    // The login of the PPPoE line.
    TABLE(
        single_row, network.pppoe, .number = 48, .get = "get_pppoe_param_from_db",
        .set = "save_pppoe_param_to_db", .says = service_says("update pppoe_config_info error\n"),
        .count = SQL("select count(*) from pppoe_config_info;"),
        .fill =
            SQL("insert into pppoe_config_info(idx ,username ,passwd ,enable)values (1,'admin','58213',0);"),
        .save = SAVE("update pppoe_config_info set username = '%q',passwd = '%q',enable = %d where idx = 1;",
                     ENCRYPTED(username, 128), ENCRYPTED(passwd, 64), F(enable))),

    // The dynamic DNS accounts, one per provider.
    TABLE(list, service.ddns, .number = 49, .get = "get_ddns_param_from_db", .set = "save_ddns_param_to_db",
          .says = service_says("update ddns_config_info error\n"), .top_up = true,
          .count = SQL("select count(*) from ddns_config_info;"),
          .fill = SQL("insert into ddns_config_info(idx,enable_ddns,host_type,port,username,passwd "
                      ",domain_name,server_name,res)values (%d,0,0,0,'','','','','');"),
          .save = SAVE("update ddns_config_info set enable_ddns = %d,host_type = %d,port = %d,domain_name = "
                       "'%q',server_name = '%q',username = '%q',passwd = '%q',res = '%q', country_id = %u  "
                       "where idx = %d;",
                       FIELDS(enable_ddns, host_type, port), ENCRYPTED(domain_name, 256),
                       ENCRYPTED(server_name, 256), ENCRYPTED(username, 128), ENCRYPTED(passwd, 64),
                       FIELDS(res, country_id))),

    // The two FTP servers that pictures go to, and how their directories and files are named.
    TABLE(
        list, service.ftp_serv, .number = 52, .get = "get_ftp_serv_param_from_db",
        .set = "save_ftp_serv_param_to_db",
        .says = {.count = " db_query_row_num err\n", .load_row = "invalid ftp idx: %d\n"},
        .count = SQL("select count(*) from ftp_serv_list;"),
        .fill = SQL(
            "insert into ftp_serv_list(idx,serv_addr_v4 , serv_addr_v6, serv_port ,username ,passwd "
            ",dir_level ,top_dir_mode "
            ",sec_dir_mode,serv_add_domain,top_custo_dir,sub_custo_dir,version,protocol_type,server_type,"
            "addr_type,anony, up_ftp_enable, interval_days, begin_time, prefix_name, ftp_name_type)values "
            "(%d,0,'',23,'admin','58213',1,0,1,'','','',0,0,0,0,0, 0, 0, 0, '', 0);"),
        .save = SAVE("update ftp_serv_list set serv_port = %d,serv_addr_v4=%u,serv_addr_v6 = '%q',username = "
                     "'%q',passwd = '%q',dir_level = %d,top_dir_mode = %d, sec_dir_mode = %d,serv_add_domain "
                     "= '%q',top_custo_dir = '%q',sub_custo_dir = '%q',version = %d,protocol_type = "
                     "%d,server_type = %d,addr_type = %d,anony = %d, up_ftp_enable = %d,interval_days = %u, "
                     "begin_time = %u, prefix_name = '%q', ftp_name_type = %u where idx = %d;",
                     FIELDS(serv_port, serv_addr_v4), COLONS(serv_addr_v6), ENCRYPTED(username, 128),
                     ENCRYPTED(passwd, 64),
                     FIELDS(dir_level, top_dir_mode, sec_dir_mode, serv_add_domain, top_custo_dir,
                            sub_custo_dir, version, protocol_type, server_type, addr_type, anony,
                            up_ftp_enable, interval_days, begin_time, prefix_name, ftp_name_type))),

    // The time zone and its daylight-saving offset.
    TABLE(
        single_row, service.dst, .number = 53, .get = "get_dst_param_from_db", .set = "save_dst_param_to_db",
        .says = service_says(), .count = SQL("select count(*) from dst_config_info;"),
        .fill = SQL("insert into "
                    "dst_config_info(idx,zone_index,dst_enable,zone_offset_hour,zone_offset_min,"
                    "dst_offset_min,dst_abbr,timezone_abbr)values (1,0,1,1,1,1,'1','2');"),
        .save = SAVE(
            "update dst_config_info set zone_index = %d, dst_enable = %d,zone_offset_hour = "
            "%d,zone_offset_min = %d,dst_offset_min = %d,dst_abbr = '%s',timezone_abbr = '%s' where idx = 1;",
            FIELDS(zone_index, dst_enable, zone_offset_hour, zone_offset_min, dst_offset_min, dst_abbr,
                   timezone_abbr))),

    // When daylight saving begins and ends.
    TABLE(list, service.date_time, .number = 54, .get = "get_date_time_param_from_db",
          .set = "save_date_time_param_to_db", .says = service_says(), .top_up = true,
          .count = SQL("select count(*) from date_time_list;"),
          .fill = SQL("insert into date_time_list(idx ,time_type ,mouth ,day ,hour ,minute ,sec "
                      ",weekno)values (%d,0,0,0,0,0,0,0);"),
          .save = PUTS(PUT_FOR(1, 1,
                               "update date_time_list set time_type = %d,mouth = %d,day = %d,hour = "
                               "%d,minute = %d,weekno = %d where idx = 1;",
                               FIELDS(time_type, mouth, day, hour, minute, weekno)),
                       PUT_FOR(2, 2,
                               "update date_time_list set time_type = %d,mouth = %d,day = %d,hour = "
                               "%d,minute = %d,weekno = %d where idx = 2;",
                               FIELDS(time_type, mouth, day, hour, minute, weekno)))),

    // Discovery switches and the time zone as a TZ variable.
    TABLE(
        single_row, service.weblib, .number = 55, .get = "get_weblib_param_from_db",
        .set = "save_weblib_param_to_db", .says = service_says(),
        .count = SQL("select count(*) from weblib_config;"),
        .fill =
            SQL("insert into weblib_config(idx ,upnp_enable ,zero_config_enable ,tz_env)values (1,1,1,'1');"),
        .save = SAVE(
            "update weblib_config set upnp_enable = %d,zero_config_enable = %d,tz_env = '%s' where idx = 1;",
            FIELDS(upnp_enable, zero_config_enable, tz_env))),

    // ONVIF discovery and event subscription, counted and completed channel by channel.
    TABLE_BY(
        per_channel, service.onvif_base, (outer("chan_no"), always("idx", 1)), .number = 57,
        .get = "get_onvif_base_param_from_db", .set = "save_onvif_base_param_to_db",
        .single = "save_single_onvif_base_param_to_db",
        .says = {.count = " db_query_row_num err\n",
                 .save_key = "save_single_onvif_base_param_to_db invalid chan_no: %d\n"},
        .count = SQL("select count(*) from onvif_base_config where chan_no = %d;"),
        .fill = SQL("insert into onvif_base_config(idx,chan_no, "
                    "proxy_addr_v4,proxy_addr_v6,nondiscoverable,subscribe,topic_filter,content_filter)"
                    "values (1,%d, 0,'',1,0,'','');"),
        .save = SAVE("update onvif_base_config set proxy_addr_v4=%u,proxy_addr_v6 = '%s',nondiscoverable = "
                     "%d,subscribe=%d,topic_filter='%s',content_filter='%s' where idx = 1 and chan_no = %d;",
                     F(proxy_addr_v4), COLONS(proxy_addr_v6),
                     FIELDS(nondiscoverable, subscribe, topic_filter, content_filter))),

    // The ONVIF media profiles: the tokens of the sources and encoders that each ties together.
    TABLE(list, service.onvif_profile, .number = 58, .get = "get_onvif_profile_param_from_db",
          .set = "save_onvif_profile_param_to_db", .says = {.count = " db_query_row_num err\n"},
          .top_up = true, .count = SQL("select count(*) from onvif_profile_list;"),
          .fill = SQL("insert into "
                      "onvif_profile_list(idx,name,profile_type,token,video_source,audio_source,video_enc,"
                      "audio_enc,video_analysis,ptz,metadata,audio_output,audio_dec)values "
                      "(%d,'admin',1,'0','0','0','0','0','0','0','0','0','0');"),
          .save = SAVE("update onvif_profile_list set profile_type = %d,name = '%s',token ='%s',video_source "
                       "= '%s',audio_source = '%s',video_enc = '%s',audio_enc = '%s',video_analysis = "
                       "'%s',ptz = '%s',metadata = '%s',audio_output = '%s',audio_dec = '%s' where idx = %d;",
                       FIELDS(profile_type, name, token, video_source, audio_source, video_enc, audio_enc,
                              video_analysis, ptz, metadata, audio_output, audio_dec))),

    // The ports of the multicast streams.
    TABLE(list, service.multicast_port, .number = 59, .get = "get_multicast_port_from_db",
          .set = "save_multicast_port_to_db",
          .says = {.count = " db_query_row_num err\n",
                   .open = "db_query_open_v2 err\n",
                   .empty = " db_query_rec_count_v2 err\n"},
          .count = SQL("select count(*) from multicast_port;"),
          .fill = SQL(
              "insert into multicast_port(idx, main_video_port, main_audio_port, main_metadata_port, "
              "sub_video_port, sub_audio_port, sub_metadata_port) values(%d,8860,8862,8864,8666,8868,8870);"),
          .save =
              SAVE("update multicast_port set main_video_port = %d, main_audio_port = %d, main_metadata_port "
                   "= %d, sub_video_port = %d, sub_audio_port = %d, sub_metadata_port = %d where idx = %d;",
                   FIELDS(main_video_port, main_audio_port, main_metadata_port, sub_video_port,
                          sub_audio_port, sub_metadata_port))),

    // The switches of the PSIA and CGI interfaces.
    TABLE(single_row, service.psia_cgi, .number = 65, .get = "db_get_psiacgi_config",
          .set = "db_save_psiacgi_config",
          .says = {.write = "update psia_cgi_config failed\n",
                   .insert = "insert into psia_cgi_config err\n",
                   .open = " db_query_open_v2 err !\n",
                   .empty = " db_query_rec_count_v2 err !\n"},
          .graded = true, .count = SQL("select count(*) from psia_cgi_config;"),
          .fill = SQL("insert into "
                      "psia_cgi_config(idx,dest_port,source_port,login_anony,ir_enable,telnet_enable,"
                      "abf_disable,led_enable,defog_enable, suppLight_enable) values(%d,0,0,0,0,0,0,0,0,0);"),
          .save = SAVE("update psia_cgi_config set dest_port = %d, source_port = %d, login_anony = %d, "
                       "ir_enable = %d, telnet_enable = %d, abf_disable = %d, led_enable = %d, defog_enable "
                       "= %d, suppLight_enable = %d where idx = %d;",
                       FIELDS(dest_port, source_port, login_anony, ir_enable, telnet_enable, abf_disable,
                              led_enable, defog_enable, suppLight_enable))),

    // The addresses that may connect, or may not.
    TABLE(single_row, service.ip_filter, .number = 67, .get = "db_get_ipfilter_config",
          .set = "db_save_ipfilter_config", .says = interface_says("ip_filter_table failed \n"),
          .graded = true, .count = SQL("select count(*) from ip_filter_table;"),
          .fill = SQL("insert into "
                      "ip_filter_table(idx,enable_v4,filter_type_v4,enable_v6,filter_type_v6,ipaddress,"
                      "ipv6address) values(%d,0,0,0,0,'','');"),
          .save = SAVE("update ip_filter_table set enable_v4 = %d,filter_type_v4 = %d,enable_v6 = "
                       "%d,filter_type_v6 = %d,ipaddress='%s',ipv6address = '%s' where idx = %d;",
                       FIELDS(enable_v4, filter_type_v4, enable_v6, filter_type_v6), COMMAS(ipaddress),
                       COLONS(ipv6address))),

    // The router's port mapping by UPnP.
    TABLE(
        single_row, service.upnp, .number = 68, .get = "db_get_upnp_config", .set = "db_save_upnp_config",
        .says = interface_says("upnp_config failed \n"), .graded = true,
        .count = SQL("select count(*) from upnp_config;"),
        .fill = SQL("insert into "
                    "upnp_config(idx,enable,portmap,type,res1,router_lan_ip_v4,router_lan_ip_v6,http_portmap,"
                    "command_portmap,rtsp_portmap,friend_name) values(1,0,0,0,0,0,'','','','','');"),
        .save = SAVE("update upnp_config set enable = %d,portmap = "
                     "%d,type=%d,res1=%d,router_lan_ip_v4=%d,router_lan_ip_v6='%q',http_portmap='%q',"
                     "command_portmap='%q',rtsp_portmap='%q',friend_name='%q' where idx = 1;",
                     FIELDS(enable, portmap, type, res1, router_lan_ip_v4), COLONS(router_lan_ip_v6),
                     COLONS(http_portmap), COLONS(command_portmap), COLONS(rtsp_portmap), F(friend_name))),

    // The scopes announced by ONVIF discovery.
    TABLE(
        list, service.onvif_scope, .number = 69, .get = "db_get_onvif_scope_list",
        .set = "db_save_onvif_scope_list", .says = {.count = " db_query_row_num err\n"}, .top_up = true,
        .count = SQL("select count(*) from onvif_scope_list;"),
        .fill = SQL("insert into onvif_scope_list(idx,type,uri)values (%d,2,'0');"),
        .save = SAVE("update onvif_scope_list set type = %d, uri = '%s' where idx = %d;", FIELDS(type, uri))),

    // Whether RTCP reports are sent.
    TABLE(single_row, service, .number = 72, .get = "db_get_rtcp_config", .set = "db_save_rtcp_config",
          .says = {.count = " db_query_row_num rtcp_config err !\n", .open = " db_query_open_v2 err\n"},
          .graded = true, .count = SQL("select count(*) from rtcp_config;"),
          .fill = SQL("insert into rtcp_config(idx,enable) values(%d,1);"),
          .save = SAVE("update rtcp_config set enable = %d where idx = %d;", as("enable", F(rtcp_enable)))),

    // How many live views may be open at a time.
    TABLE_BY(single_row, service, (always("idx", 1), always("chan_no", 1)), .number = 167,
             .get = "db_get_max_connect_num_config", .set = "db_save_max_connect_num_config",
             .says = {.write = "SQL error\n"},
             .save = SAVE("replace into max_connect_num (idx, chan_no, preview_max_link)values(1, 1, %u);",
                          F(preview_max_link)),
             .load = SQL("select * from max_connect_num where idx = 1 and chan_no = 1;")),

    // The multicast group that the main stream is actively sent to.
    TABLE(single_row, service.active_mcast, .number = 223, .get = "db_get_active_mcast_param",
          .set = "db_save_active_mcast_param",
          .says = {.write = "update active_mcast_param error:%s\n",
                   .count = "db_query_row_num error:\n",
                   .insert = "insert into active_mcast_param error:\n",
                   .empty = "db_query_rec_count_v2 error: %d\n"},
          .count = SQL("select count(*) from active_mcast_param;"),
          .fill = SQL("insert into "
                      "active_mcast_param(idx,mcastaddr_main_ipv4,mcastaddr_main_ipv6,mcastport_main,"
                      "mcastmode_main)values (1,0,'',0,0);"),
          .save = SAVE("update active_mcast_param set "
                       "mcastaddr_main_ipv4=%u,mcastaddr_main_ipv6='%s',mcastport_main=%d,mcastmode_main=%d "
                       "where idx = 1;",
                       F(mcastaddr_main_ipv4), COLONS(mcastaddr_main_ipv6),
                       FIELDS(mcastport_main, mcastmode_main))),

    // The mode that the Wi-Fi radio works in.
    TABLE(
        single_row, service, .number = 228, .get = "db_get_wifi_mode_config",
        .set = "db_save_wifi_mode_config", .says = {.write = "SQL error:%s\n"},
        .save = SAVE("replace into wifi_mode_config (idx, cur_wifi_mode) values(%d, %d);", F(cur_wifi_mode))),
};

}  // namespace

const std::span<const Table> kNetworkTables = kTables;
