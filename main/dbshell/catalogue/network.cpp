// The tables of the network interface and of the services on it.
#include "catalogue.h"
#include "vocabulary.h"

namespace dbshell {

namespace {

namespace interface {

constexpr Messages kSays{.write = "%F failed\n", .open = " db_query_open_v2 err\n"};
constexpr Codes kCodes = kGraded;

constexpr Table kTables[] = {
    // The wired and wireless interface: hardware addresses, link, address assignment and the SSID.
    ENSURE(single_row, network.netconfig, 31, "db_get_netconfig", "db_save_netconfig",
           .says = {.open = "db_query_open_v2 error: %d\n"},
           .fill = SQL("insert into netconfig_table(idx,nictype,mac_addr,wifi_mac,mtu,media_type,dhcp_enable,auto_dns_enable,nic_mode,mana_mode,security,ssid,eth0_dhcp_enable,ipv6_mode, multi_discover_mode, wifi_enable) values(%d,0,'','',0,0,0,0,0,0,0,'',0,0, 0, 0);"),
           .save = SAVE("update netconfig_table set mac_addr = '%s', wifi_mac = '%s', mtu = %d, media_type = %d, dhcp_enable = %d, auto_dns_enable =%d, nic_mode =%d,mana_mode = %d, security = %d, ssid = '%q', eth0_dhcp_enable = %d, ipv6_mode = %d, multi_discover_mode = %d , wifi_enable = %d where idx = %d;",
                        DIGITS(mac_addr), DIGITS(wifi_mac),
                        FIELDS(mtu, media_type, dhcp_enable, auto_dns_enable, nic_mode, mana_mode, security),
                        ENCRYPTED(ssid, 128), FIELDS(eth0_dhcp_enable, ipv6_mode, multi_discover_mode, wifi_enable)),
           .unstored = UNSTORED(Unstored{"nictype", "set once, with the default row"})),

    // How the WEP keys are used; the one row has no key column.
    ENSURE_BY(single_row, network.wep_encrypt, (), 32, "db_get_wep_encrypt", "db_save_wep_encrypt",
              .says = {.count = "db_query_row_num err !\n", .empty = " db_query_rec_count_v2 err\n"},
              .fill = SQL("insert into wep_encrypt_info (key_index, key_len, key_type, auth_mode) values(0, 0, 0, 0);"),
              .save = SAVE("update wep_encrypt_info set key_index = %u, key_len = %u, key_type = %u, auth_mode = %u;",
                           FIELDS(key_index, key_len, key_type, auth_mode))),

    // The four WEP keys, each byte as a number, the whole text encrypted.
    REPLACE(list, network.wep_key, 33, "db_get_wep_key", "db_save_wep_key",
            .says = {.write = "db_execsql failed\n", .load_row = "invalid idx value: %d\n"},
            .save = SAVE("replace into wep_key_list (idx, key_info) values(%d, '%q');",
                         encrypted(coded(ROW_ITSELF("key_info"), kArray<Row, ':'>), 512))),

    // The addresses: sixteen rows of a fixed meaning, each with the columns that its statement names.
    ENSURE_BY(list, network.ipaddr, (inner("idx"), inner("use_mod")), 35, "db_get_ipaddr_list", "db_save_ipaddr_list",
              .says = {.write = "%F failed \n", .empty = " db_query_rec_count_v2 err\n"},
              .fill = PUTS(PUT_FOR(1, 5,
                                   "insert into ipaddr_list(target,use_mod,ipv4addr,ipv6addr,ipv4mask,ipv6mask,ipport,name) values(1,%d,0,'',0,'',0,'');"),
                           PUT_FOR(6, 16,
                                   "insert into ipaddr_list(target,use_mod,ipv4addr,ipv6addr,ipv4mask,ipv6mask,ipport,name) values(2,%d,0,'',0,'',0,'');")),
              .save = PUTS(PUT_FOR(1, 1,
                                   "update ipaddr_list set ipv4addr = %u,ipv6addr = '%s',ipv4mask = %u,ipv6mask = '%s', ipport = %d where idx = %d;",
                                   F(ipv4addr), COLONS(ipv6addr), F(ipv4mask), COLONS(ipv6mask), F(ipport)),
                           PUT_THESE(ROWS(2, 3, 4, 9),
                                     "update ipaddr_list set ipv4addr = %u,ipv6addr = '%s',ipv4mask = %u,ipv6mask = '%s' where idx = %d;",
                                     F(ipv4addr), COLONS(ipv6addr), F(ipv4mask), COLONS(ipv6mask)),
                           PUT_THESE(ROWS(5, 14),
                                     "update ipaddr_list set ipv4addr = %u,ipv6addr = '%s' where idx = %d;",
                                     F(ipv4addr), COLONS(ipv6addr)),
                           PUT_FOR(6, 8, "update ipaddr_list set ipv6addr = '%s', ipport = %d where idx = %d;",
                                   COLONS(ipv6addr), F(ipport)),
                           PUT_THESE(ROWS(10, 11, 12, 15, 16),
                                     "update ipaddr_list set ipv4addr = %u,ipv6addr = '%s',ipport = %d where idx = %d;",
                                     F(ipv4addr), COLONS(ipv6addr), F(ipport)),
                           PUT_FOR(13, 13, "update ipaddr_list set ipv6addr = '%s' where idx = %d;", COLONS(ipv6addr))),
              .unstored = UNSTORED(Unstored{"target", "set once, with the default row"},
                                   Unstored{"name", "set once, with the default row"})),

    // The ports that the services listen on; type 4 is a range.
    ENSURE_BY(list, network.local_port, (inner("port_type"), inner("idx")), 36, "db_get_local_port",
              "db_save_local_port",
              .says = {.empty = " db_query_rec_count_v2 err\n", .load_row = "unknown port_type: %k\n"},
              .fill = SQL("insert into local_port_list(idx,port_mode,port_type,start_port,end_port) values(%d,1,%d,0,0);"),
              .save = PUTS(PUT_FOR(1, 3, "update local_port_list set start_port = %d where port_type = %d;",
                                   F(start_port)),
                           PUT_FOR(4, 4,
                                   "update local_port_list set start_port = %d, end_port = %d where port_type = %d;",
                                   FIELDS(start_port, end_port)),
                           PUT_FOR(5, 5, "update local_port_list set  start_port = %d where port_type = %d;",
                                   F(start_port))),
              .unstored = UNSTORED(Unstored{"port_mode", "set once, with the default row"})),

    // The same for the extended set of ports.
    ENSURE_BY(list, service.local_port_ext, (inner("port_type"), inner("idx")), 37, "db_get_local_port_ext",
              "db_save_local_port_ext",
              .says = {.open = "db_query_open_v2 err\n",
                       .empty = " db_query_rec_count_v2 err\n",
                       .load_row = "unknown port_type: %k\n"},
              .fill = SQL("insert into local_port_list_ext (idx, port_mode, port_type, start_port, end_port) values(%d, 1, %d, 0, 0);"),
              .save = PUTS(PUT_FOR(1, 3, "update local_port_list_ext set start_port = %d where port_type = %d;",
                                   F(start_port)),
                           PUT_FOR(4, 4,
                                   "update local_port_list_ext set start_port = %d, end_port = %d where port_type = %d;",
                                   FIELDS(start_port, end_port)),
                           PUT_FOR(5, 5, "update local_port_list_ext set  start_port = %d where port_type = %d;",
                                   F(start_port))),
              .unstored = UNSTORED(Unstored{"port_mode", "set once, with the default row"})),

    // The network disks: server, directory and kind; the old numeric server address is kept empty.
    ENSURE(list, service.net_hd, 38, "db_get_net_hd_config", "db_save_net_hd_config",
           .says = {.load_row = "invalid nas_idx: %d\n"},
           .fill = SQL("insert into net_hd_config (idx, hdtype, serveripv4, serveripv6, directory, mount_nfs, nas_server_addr, disk_type, iscsi_port) values(%d, 1, 0, '', '', 0, '', 0, 0);"),
           .save = SAVE("update net_hd_config set nas_server_addr = '%q', directory = '%q', mount_nfs = %d, disk_type = %d, iscsi_port = %d, serveripv4 = 0, serveripv6 = '' where idx = %d;",
                        FIELDS(nas_server_addr, directory, mount_nfs, disk_type, iscsi_port)),
           .unstored = UNSTORED(Unstored{"hdtype", "set once, with the default row"})),

    // Whether RTSP asks for a login.
    ENSURE(single_row, service, 39, "db_get_rtsp_config", "db_save_rtsp_config", .says = {.write = "%F failed \n"},
           .fill = SQL("insert into rtsp_config_table(idx,enable_auth) values(%d,0);"),
           .save = SAVE("update rtsp_config_table set enable_auth = %d where idx = %d;", F(enable_auth))),
};

}  // namespace interface

namespace services {

constexpr Messages kSays{.count = " db_query_row_num err\n"};

constexpr Table
    kTables
        [] =
            {
                // The mail account and what is sent from it.
                ENSURE(single_row, service.email, 40, "get_email_param_from_db", "save_email_param_to_db",
                       .says = {.write = "update %T error\n"},
                       .fill = SQL("insert into email_config_info(idx,user_name,passwd,attachment,server_verify,mail_interval,ssl_verify,enabled,subject,verify_type)values (1,'admin','58213',0,0,200,0,1,'email',0);"),
                       .save = SAVE("update email_config_info set user_name='%q',passwd='%q',attachment = %d,server_verify = %d,mail_interval = %d,ssl_verify = %d,enabled = %d,subject = '%q',verify_type = '%d'  where idx = 1;",
                                    ENCRYPTED(user_name, 128), ENCRYPTED(passwd, 128),
                                    FIELDS(attachment, server_verify, mail_interval, ssl_verify, enabled, subject,
                                           verify_type))),

                // The mail addresses: three of addr_type 2, then the one of addr_type 1.
                TOP_UP(list, service.email_addr, 41, "get_email_addr_list_from_db", "save_email_addr_list_to_db",
                       .says = {.write = "update %T error\n", .insert = "insert into %T error\n"},
                       .fill = PUTS(PUT_FOR(4, 4,
                                            "insert into email_addr_list(idx,name,addr,addr_type)values (%d,'admin','58213',1);"),
                                    PUT_FOR(1, 3,
                                            "insert into email_addr_list(idx,name,addr,addr_type)values (%d,'admin','58213',2);")),
                       .save = PUTS(PUT_FOR(4, 4,
                                            "update email_addr_list set name='%q', addr='%q', addr_type = %d where idx = 4;",
                                            ENCRYPTED(name, 128), ENCRYPTED(addr, 256), value("addr_type", 1)),
                                    PUT_FOR(1, 3,
                                            "update email_addr_list set name='%q', addr='%q', addr_type = %d where idx = %d;",
                                            ENCRYPTED(name, 128), ENCRYPTED(addr, 256), value("addr_type", 2)))),

                // The code points that mark outgoing packets by their kind.
                ENSURE(single_row, service.qos, 42, "get_qos_param_from_db", "save_qos_param_to_db",
                       .fill = SQL("insert into qos_config_info(idx,manage_dscp,alarm_dscp,video_dscp,audio_dscp,flag,enable)values (1,0,0,0,0,0,0);"),
                       .save = SAVE("update qos_config_info set manage_dscp = %d,alarm_dscp = %d,video_dscp = %d,audio_dscp = %d, flag = %d, enable = %d where idx = 1;",
                                    FIELDS(manage_dscp, alarm_dscp, video_dscp, audio_dscp, flag, enable))),

                // SNMP: the versions in use and their communities.
                ENSURE(single_row, service.snmp, 43, "get_snmp_param_from_db", "save_snmp_param_to_db",
                       .says = {.write = "update %T error\n"},
                       .fill = SQL("insert into snmp_config_info(idx ,enable_snmpv1 ,enable_snmpv2c,enable_snmpv3 ,read_community ,write_community ,trap_community )values (1,0,0,0,'0','0','0');"),
                       .save = SAVE("update snmp_config_info set read_community='%q',write_community='%q',trap_community = '%q',enable_snmpv1 = %d,enable_snmpv2c = %d,enable_snmpv3 = %d where idx = 1;",
                                    FIELDS(read_community,
                                           write_community, trap_community, enable_snmpv1, enable_snmpv2c, enable_snmpv3))),

                // The two users of SNMP version 3.
                TOP_UP(list, service.snmp_v3user, 44, "get_snmp_v3user_param_from_db", "save_snmp_v3user_param_to_db",
                       .says = {.write = "update %T error\n"},
                       .fill = SQL("insert into snmp_v3user_info(idx,user_type,user_name,auth_passwd,priv_passwd,auth_algorithm,priv_algorithm,security_level)values (%d,0,'0','0','0',0,0,0);"),
                       .save = SAVE(
                           "update snmp_v3user_info set user_name='%q',auth_passwd='%q',priv_passwd = '%q',user_type = %d,auth_algorithm = %d,priv_algorithm = %d,security_level = %d where idx = %d;",
                           FIELDS(user_name, auth_passwd, priv_passwd, user_type, auth_algorithm, priv_algorithm,
                                  security_level))),

                // The camera's login to a switch by 802.1X.
                ENSURE(single_row, service.ieee_8021x, 45, "get_ieee_8021x_param_from_db",
                       "save_ieee_8021x_param_to_db", .says = {.write = "update %T error\n"},
                       .fill = SQL("insert into ieee_8021x_info(idx ,eap_identity ,password ,enable_wpa ,eapol_version ,eap_type)values (1,'admin','58213',0,0,0);"),
                       .save = SAVE("update ieee_8021x_info set eap_identity='%q',password='%q',enable_wpa = %d,eapol_version = %d,eap_type = %d where idx = 1;",
                                    ENCRYPTED(eap_identity, 128), ENCRYPTED(password, 64),
                                    FIELDS(enable_wpa, eapol_version, eap_type))),

                // Time synchronisation by network and by satellite.
                ENSURE(single_row, service.ntp, 46, "get_ntp_param_from_db", "save_ntp_param_to_db",
                       .fill = SQL("insert into ntp_config_info(idx,enable_ntp,interval,timediff_hour,timediff_min, satellite_interval)values (1,0,0,0,0, 0);"),
                       .save = SAVE("update ntp_config_info set enable_ntp = %d,interval = %d,timediff_hour = %d,timediff_min = %d, satellite_interval = %u where idx = 1;",
                                    FIELDS(enable_ntp, interval, timediff_hour, timediff_min, satellite_interval))),

                // The dial-up PPP line: number, login and the addresses of both ends.
                ENSURE(single_row, service.ppp, 47, "get_ppp_param_from_db", "save_ppp_param_to_db",
                       .says = {.write = "update %T error\n"},
                       .fill = SQL("insert into ppp_config_info(idx,phone_number,ppp_attribute,remoteIpv4Addr,remoteIpv6Addr,localIpv4Addr,localIpv6Addr,localSubnetMask,username,password,mtu)values (1,'0',0,0,'',0,'',0,'admin','58213',255);"),
                       .save = SAVE("update ppp_config_info set phone_number = '%q',ppp_attribute = %d,remoteIpv4Addr = %u,remoteIpv6Addr = '%s',localIpv4Addr = %u,localIpv6Addr = '%s',localSubnetMask = %u,username = '%q',password = '%q',mtu = %d where idx = 1;",
                                    FIELDS(phone_number, ppp_attribute, remoteIpv4Addr),
                                    COLONS(remoteIpv6Addr), F(localIpv4Addr), COLONS(localIpv6Addr),
                                    FIELDS(localSubnetMask, username, password, mtu))),

                // The login of the PPPoE line.
                ENSURE(single_row, network.pppoe, 48, "get_pppoe_param_from_db", "save_pppoe_param_to_db",
                       .says = {.write = "update %T error\n"},
                       .fill = SQL("insert into pppoe_config_info(idx ,username ,passwd ,enable)values (1,'admin','58213',0);"),
                       .save = SAVE("update pppoe_config_info set username = '%q',passwd = '%q',enable = %d where idx = 1;",
                                    ENCRYPTED(username, 128), ENCRYPTED(passwd, 64), F(enable))),

                // The dynamic DNS accounts, one per provider.
                TOP_UP(list, service.ddns, 49, "get_ddns_param_from_db", "save_ddns_param_to_db",
                       .says = {.write = "update %T error\n"},
                       .fill = SQL("insert into ddns_config_info(idx,enable_ddns,host_type,port,username,passwd ,domain_name,server_name,res)values (%d,0,0,0,'','','','','');"),
                       .save = SAVE("update ddns_config_info set enable_ddns = %d,host_type = %d,port = %d,domain_name = '%q',server_name = '%q',username = '%q',passwd = '%q',res = '%q', country_id = %u  where idx = %d;",
                                    FIELDS(enable_ddns, host_type, port), ENCRYPTED(domain_name, 256),
                                    ENCRYPTED(server_name, 256), ENCRYPTED(username, 128), ENCRYPTED(passwd, 64),
                                    FIELDS(res, country_id))),

                // The two FTP servers that pictures go to, and how their directories and files are named.
                ENSURE(list,
                       service.ftp_serv, 52, "get_ftp_serv_param_from_db", "save_ftp_serv_param_to_db", .says = {.load_row = "invalid ftp idx: %d\n"}, .fill = SQL("insert into ftp_serv_list(idx,serv_addr_v4 , serv_addr_v6, serv_port ,username ,passwd ,dir_level ,top_dir_mode ,sec_dir_mode,serv_add_domain,top_custo_dir,sub_custo_dir,version,protocol_type,server_type,addr_type,anony, up_ftp_enable, interval_days, begin_time, prefix_name, ftp_name_type)values (%d,0,'',23,'admin','58213',1,0,1,'','','',0,0,0,0,0, 0, 0, 0, '', 0);"),
                       .save = SAVE("update ftp_serv_list set serv_port = %d,serv_addr_v4=%u,serv_addr_v6 = '%q',username = '%q',passwd = '%q',dir_level = %d,top_dir_mode = %d, sec_dir_mode = %d,serv_add_domain = '%q',top_custo_dir = '%q',sub_custo_dir = '%q',version = %d,protocol_type = %d,server_type = %d,addr_type = %d,anony = %d, up_ftp_enable = %d,interval_days = %u, begin_time = %u, prefix_name = '%q', ftp_name_type = %u where idx = %d;",
                                    FIELDS(serv_port, serv_addr_v4), COLONS(serv_addr_v6), ENCRYPTED(username, 128),
                                    ENCRYPTED(passwd, 64),
                                    FIELDS(dir_level, top_dir_mode, sec_dir_mode, serv_add_domain, top_custo_dir,
                                           sub_custo_dir, version, protocol_type, server_type, addr_type, anony,
                                           up_ftp_enable, interval_days, begin_time, prefix_name, ftp_name_type))),

                // The time zone and its daylight-saving offset.
                ENSURE(single_row, service.dst, 53, "get_dst_param_from_db", "save_dst_param_to_db",
                       .fill = SQL("insert into dst_config_info(idx,zone_index,dst_enable,zone_offset_hour,zone_offset_min,dst_offset_min,dst_abbr,timezone_abbr)values (1,0,1,1,1,1,'1','2');"),
                       .save = SAVE("update dst_config_info set zone_index = %d, dst_enable = %d,zone_offset_hour = %d,zone_offset_min = %d,dst_offset_min = %d,dst_abbr = '%s',timezone_abbr = '%s' where idx = 1;",
                                    FIELDS(zone_index, dst_enable, zone_offset_hour, zone_offset_min, dst_offset_min,
                                           dst_abbr, timezone_abbr))),

                // When daylight saving begins and ends.
                TOP_UP(list, service.date_time, 54, "get_date_time_param_from_db", "save_date_time_param_to_db",
                       .fill = SQL("insert into date_time_list(idx ,time_type ,mouth ,day ,hour ,minute ,sec ,weekno)values (%d,0,0,0,0,0,0,0);"),
                       .save = SAVE("update date_time_list set time_type = %d,mouth = %d,day = %d,hour = %d,minute = %d,weekno = %d where idx = %d;",
                                    FIELDS(time_type, mouth, day, hour, minute, weekno)),
                       .unstored = UNSTORED(Unstored{"sec", "set once, with the default row"})),

                // Discovery switches and the time zone as a TZ variable.
                ENSURE(single_row, service.weblib, 55, "get_weblib_param_from_db", "save_weblib_param_to_db",
                       .fill = SQL("insert into weblib_config(idx ,upnp_enable ,zero_config_enable ,tz_env)values (1,1,1,'1');"),
                       .save = SAVE("update weblib_config set upnp_enable = %d,zero_config_enable = %d,tz_env = '%s' where idx = 1;",
                                    FIELDS(upnp_enable, zero_config_enable, tz_env))),

                // ONVIF discovery and event subscription, counted and completed channel by channel.
                ENSURE_BY(per_channel, service.onvif_base, (outer("chan_no"), always("idx", 1)), 57,
                          "get_onvif_base_param_from_db", "save_onvif_base_param_to_db",
                          .single = "save_single_onvif_base_param_to_db",
                          .says = {.save_key = "save_single_onvif_base_param_to_db invalid chan_no: %d\n"},
                          .fill = SQL("insert into onvif_base_config(idx,chan_no, proxy_addr_v4,proxy_addr_v6,nondiscoverable,subscribe,topic_filter,content_filter)values (1,%d, 0,'',1,0,'','');"),
                          .save = SAVE("update onvif_base_config set proxy_addr_v4=%u,proxy_addr_v6 = '%s',nondiscoverable = %d,subscribe=%d,topic_filter='%s',content_filter='%s' where idx = 1 and chan_no = %d;",
                                       F(proxy_addr_v4), COLONS(proxy_addr_v6),
                                       FIELDS(nondiscoverable, subscribe, topic_filter, content_filter))),

                // The ONVIF media profiles: the tokens of the sources and encoders that each ties together.
                TOP_UP(list, service.onvif_profile, 58, "get_onvif_profile_param_from_db",
                       "save_onvif_profile_param_to_db",
                       .fill = SQL("insert into onvif_profile_list(idx,name,profile_type,token,video_source,audio_source,video_enc,audio_enc,video_analysis,ptz,metadata,audio_output,audio_dec)values (%d,'admin',1,'0','0','0','0','0','0','0','0','0','0');"),
                       .save = SAVE("update onvif_profile_list set profile_type = %d,name = '%s',token ='%s',video_source = '%s',audio_source = '%s',video_enc = '%s',audio_enc = '%s',video_analysis = '%s',ptz = '%s',metadata = '%s',audio_output = '%s',audio_dec = '%s' where idx = %d;",
                                    FIELDS(profile_type, name, token, video_source, audio_source, video_enc, audio_enc,
                                           video_analysis, ptz, metadata, audio_output, audio_dec))),

                // The ports of the multicast streams.
                ENSURE(list, service.multicast_port, 59, "get_multicast_port_from_db", "save_multicast_port_to_db",
                       .says = {.open = "db_query_open_v2 err\n", .empty = " db_query_rec_count_v2 err\n"},
                       .fill = SQL("insert into multicast_port(idx, main_video_port, main_audio_port, main_metadata_port, sub_video_port, sub_audio_port, sub_metadata_port) values(%d,8860,8862,8864,8666,8868,8870);"),
                       .save = SAVE("update multicast_port set main_video_port = %d, main_audio_port = %d, main_metadata_port = %d, sub_video_port = %d, sub_audio_port = %d, sub_metadata_port = %d where idx = %d;",
                                    FIELDS(main_video_port, main_audio_port, main_metadata_port, sub_video_port,
                                           sub_audio_port, sub_metadata_port)),
                       .unstored = UNSTORED(Unstored{"other_video_port", "never written"},
                                            Unstored{"other_audio_port", "never written"},
                                            Unstored{"other_metadata_port", "never written"})),

                // The switches of the PSIA and CGI interfaces.
                ENSURE(single_row, service.psia_cgi, 65, "db_get_psiacgi_config", "db_save_psiacgi_config",
                       .says = {.write = "update %T failed\n",
                                .count = " db_query_row_num err !\n",
                                .insert = "insert into %T err\n",
                                .open = " db_query_open_v2 err !\n",
                                .empty = " db_query_rec_count_v2 err !\n"},
                       .graded = kGraded,
                       .fill = SQL("insert into psia_cgi_config(idx,dest_port,source_port,login_anony,ir_enable,telnet_enable,abf_disable,led_enable,defog_enable, suppLight_enable) values(%d,0,0,0,0,0,0,0,0,0);"),
                       .save = SAVE("update psia_cgi_config set dest_port = %d, source_port = %d, login_anony = %d, ir_enable = %d, telnet_enable = %d, abf_disable = %d, led_enable = %d, defog_enable = %d, suppLight_enable = %d where idx = %d;",
                                    FIELDS(dest_port, source_port, login_anony, ir_enable, telnet_enable, abf_disable,
                                           led_enable, defog_enable, suppLight_enable))),

                // The addresses that may connect, or may not.
                ENSURE(single_row, service.ip_filter, 67, "db_get_ipfilter_config", "db_save_ipfilter_config",
                       .says = {.write = "%T failed \n",
                                .count = " db_query_row_num err !\n",
                                .open = " db_query_open_v2 err\n"},
                       .graded = kGraded,
                       .fill = SQL("insert into ip_filter_table(idx,enable_v4,filter_type_v4,enable_v6,filter_type_v6,ipaddress,ipv6address) values(%d,0,0,0,0,'','');"),
                       .save = SAVE("update ip_filter_table set enable_v4 = %d,filter_type_v4 = %d,enable_v6 = %d,filter_type_v6 = %d,ipaddress='%s',ipv6address = '%s' where idx = %d;",
                                    FIELDS(enable_v4, filter_type_v4, enable_v6, filter_type_v6), COMMAS(ipaddress),
                                    COLONS(ipv6address))),

                // The router's port mapping by UPnP.
                ENSURE(single_row, service.upnp, 68, "db_get_upnp_config", "db_save_upnp_config",
                       .says = {.write = "%T failed \n",
                                .count = " db_query_row_num err !\n",
                                .open = " db_query_open_v2 err\n"},
                       .graded = kGraded,
                       .fill = SQL(
                           "insert into upnp_config(idx,enable,portmap,type,res1,router_lan_ip_v4,router_lan_ip_v6,http_portmap,command_portmap,rtsp_portmap,friend_name) values(1,0,0,0,0,0,'','','','','');"),
                       .save = SAVE("update upnp_config set enable = %d,portmap = %d,type=%d,res1=%d,router_lan_ip_v4=%d,router_lan_ip_v6='%q',http_portmap='%q',command_portmap='%q',rtsp_portmap='%q',friend_name='%q' where idx = 1;",
                                    FIELDS(enable, portmap, type, res1, router_lan_ip_v4), COLONS(router_lan_ip_v6),
                                    COLONS(http_portmap), COLONS(command_portmap), COLONS(rtsp_portmap),
                                    F(friend_name))),

                // The scopes announced by ONVIF discovery.
                TOP_UP(list, service.onvif_scope, 69, "db_get_onvif_scope_list", "db_save_onvif_scope_list",
                       .fill = SQL("insert into onvif_scope_list(idx,type,uri)values (%d,2,'0');"),
                       .save = SAVE("update onvif_scope_list set type = %d, uri = '%s' where idx = %d;",
                                    FIELDS(type, uri))),

                // Whether RTCP reports are sent.
                ENSURE(single_row, service, 72, "db_get_rtcp_config", "db_save_rtcp_config",
                       .says = {.count = " db_query_row_num %T err !\n", .open = " db_query_open_v2 err\n"},
                       .graded = kGraded, .fill = SQL("insert into rtcp_config(idx,enable) values(%d,1);"),
                       .save = SAVE("update rtcp_config set enable = %d where idx = %d;",
                                    as("enable", F(rtcp_enable)))),

                // How many live views may be open at a time.
                REPLACE_BY(single_row, service, (always("idx", 1), always("chan_no", 1)), 167,
                           "db_get_max_connect_num_config", "db_save_max_connect_num_config",
                           .says = {.write = "SQL error\n"},
                           .save = SAVE("replace into max_connect_num (idx, chan_no, preview_max_link)values(1, 1, %u);",
                                        F(preview_max_link)),
                           .load = SQL("select * from max_connect_num where idx = 1 and chan_no = 1;")),

                // The multicast group that the main stream is actively sent to.
                ENSURE(single_row, service.active_mcast, 223, "db_get_active_mcast_param", "db_save_active_mcast_param",
                       .says = {.write = "update %T error:%s\n",
                                .count = "db_query_row_num error:\n",
                                .insert = "insert into %T error:\n",
                                .empty = "db_query_rec_count_v2 error: %d\n"},
                       .fill = SQL("insert into active_mcast_param(idx,mcastaddr_main_ipv4,mcastaddr_main_ipv6,mcastport_main,mcastmode_main)values (1,0,'',0,0);"),
                       .save = SAVE("update active_mcast_param set mcastaddr_main_ipv4=%u,mcastaddr_main_ipv6='%s',mcastport_main=%d,mcastmode_main=%d where idx = 1;",
                                    F(mcastaddr_main_ipv4), COLONS(mcastaddr_main_ipv6),
                                    FIELDS(mcastport_main, mcastmode_main))),

                // The mode that the Wi-Fi radio works in.
                REPLACE(single_row, service, 228, "db_get_wifi_mode_config", "db_save_wifi_mode_config",
                        .says = {.write = "SQL error:%s\n"},
                        .save = SAVE("replace into wifi_mode_config (idx, cur_wifi_mode) values(%d, %d);",
                                     F(cur_wifi_mode))),
};

}  // namespace services

constexpr std::span<const Table> kGroups[] = {interface::kTables, services::kTables};

}  // namespace

const Domain kNetworkTables = kGroups;

}  // namespace dbshell
