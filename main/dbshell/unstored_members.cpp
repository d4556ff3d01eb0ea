#include "unstored_members.h"

#include <cstddef>
#include <type_traits>
#include <utility>

#include "device_config.h"

namespace dbshell {

namespace {

template <class Array>
using Element = std::remove_all_extents_t<Array>;

// An array of any dimensions.
template <class Array>
consteval UnstoredMember::Each each() {
    return {sizeof(Array) / sizeof(Element<Array>), sizeof(Element<Array>)};
}

template <class Member>
consteval UnstoredMember member(std::string_view path, std::string_view reason, std::size_t offset) {
    return {path, reason, static_cast<uint32_t>(offset), sizeof(Member)};
}

consteval UnstoredMember from_to(std::string_view path, UnstoredMember first, UnstoredMember last) {
    first.path = path;
    first.size = last.offset + last.size - first.offset;
    return first;
}

consteval UnstoredMember in(UnstoredMember::Each outer, UnstoredMember::Each inner, UnstoredMember m) {
    m.outer = outer;
    m.inner = inner;
    return m;
}

// Of the outer array's elements those alone, counted from 1 as rows are.
template <class... Row>
consteval UnstoredMember rows(UnstoredMember m, Row... row) {
    m.only = (uint64_t{0} | ... | (uint64_t{1} << (row - 1)));
    return m;
}

#define TYPE_OF_(holder, path) std::remove_reference_t<decltype((std::declval<holder&>().path))>
#define ELEMENT_OF_(holder, array) Element<TYPE_OF_(holder, array)>

#define MEMBER(path, reason) member<TYPE_OF_(DEVICECONFIG, path)>(#path, reason, offsetof(DEVICECONFIG, path))
// All from one member to another.
#define FROM_TO(first, last, reason) from_to(#first " to " #last, MEMBER(first, reason), MEMBER(last, reason))
// A member of each element of an array; of each element of an array that each element of an array has.
#define IN_EACH(array, path, reason)                             \
    in(each<TYPE_OF_(DEVICECONFIG, array)>(), {},                \
       member<TYPE_OF_(ELEMENT_OF_(DEVICECONFIG, array), path)>( \
           #array "[]." #path, reason,                           \
           offsetof(DEVICECONFIG, array) + offsetof(ELEMENT_OF_(DEVICECONFIG, array), path)))
#define IN_EACH_OF_EACH(array, inner, path, reason)                                                      \
    in(each<TYPE_OF_(DEVICECONFIG, array)>(), each<TYPE_OF_(ELEMENT_OF_(DEVICECONFIG, array), inner)>(), \
       member<TYPE_OF_(ELEMENT_OF_(ELEMENT_OF_(DEVICECONFIG, array), inner), path)>(                     \
           #array "[]." #inner "[]." #path, reason,                                                      \
           offsetof(DEVICECONFIG, array) + offsetof(ELEMENT_OF_(DEVICECONFIG, array), inner) +           \
               offsetof(ELEMENT_OF_(ELEMENT_OF_(DEVICECONFIG, array), inner), path)))

constexpr const char* kReserved = "reserved";
constexpr const char* kRowHasNone = "the statement of these rows does not store it";
constexpr const char* kFirstTwinAlone = "only the te_ tables have the columns";
constexpr const char* kFourLanes = "there are columns for the first four lanes";
constexpr const char* kFactoryFile = "from the factory's lane file only";

constexpr UnstoredMember kMembers[] = {
    MEMBER(device.reserved, kReserved),
    IN_EACH(channel, reserved, kReserved),
    IN_EACH(channel, reserved_position, kReserved),
    IN_EACH_OF_EACH(channel, logo_param, reserved, kReserved),
    IN_EACH(channel, reserved_end, kReserved),
    IN_EACH(users.user, reserved_word, kReserved),
    IN_EACH(users.user, reserved, kReserved),
    IN_EACH(users.sec_user, reserved_word, kReserved),
    IN_EACH(users.sec_user, reserved, kReserved),
    MEMBER(reserved_sensor, kReserved),
    IN_EACH(sensor, video_standard, "the main application's own, no column is made for it"),
    IN_EACH(sensor, reserved, kReserved),

    rows(IN_EACH(network.ipaddr, ipv4addr, kRowHasNone), 6, 7, 8, 13),
    rows(IN_EACH(network.ipaddr, ipv4mask, kRowHasNone), 5, 6, 7, 8, 10, 11, 12, 13, 14, 15, 16),
    rows(IN_EACH(network.ipaddr, ipv6mask, kRowHasNone), 5, 6, 7, 8, 10, 11, 12, 13, 14, 15, 16),
    rows(IN_EACH(network.ipaddr, ipport, kRowHasNone), 2, 3, 4, 5, 9, 13, 14),
    IN_EACH(network.ipaddr, reserved, kReserved),
    rows(IN_EACH(network.local_port, end_port, kRowHasNone), 1, 2, 3, 5),
    rows(IN_EACH(service.local_port_ext, end_port, kRowHasNone), 1, 2, 3, 5),
    MEMBER(service.reserved, kReserved),
    IN_EACH(service.ddns, reserved, kReserved),
    IN_EACH(service.ftp_serv, reserved, kReserved),
    MEMBER(service.active_mcast.reserved, kReserved),
    MEMBER(service.reserved_end, kReserved),

    IN_EACH(event.video_analysis, type1.reserved, kReserved),
    IN_EACH(event.video_analysis, reserved, kReserved),
    IN_EACH(event.disk_quota, reserved, kReserved),
    IN_EACH_OF_EACH(event.record, schedule.day, reserved, kReserved),
    IN_EACH_OF_EACH(event.record, schedule.segment, reserved, kReserved),
    IN_EACH(event.auto_capture, schedule.reserved, kReserved),
    MEMBER(event.reserved, kReserved),
    rows(IN_EACH(event.wireless_schedule, segment, "there are eight wireless alarms"), 9, 10, 11, 12, 13, 14,
         15, 16),

    IN_EACH(dome.privacy.privacygroup_Input, reserved, kReserved),
    IN_EACH(dome.privacy.privacygroup_Input, reserved_tail, kReserved),
    IN_EACH(dome.preset, reserved, kReserved),
    IN_EACH(dome.inner_preset, reserved, kReserved),
    IN_EACH_OF_EACH(dome.patrol, scanpoint, reserved, kReserved),
    MEMBER(dome.tracking.schedule.reserved, kReserved),
    IN_EACH(analytics.face_snap, reserved, kReserved),
    IN_EACH(analytics.line_detect, reserved, kReserved),
    IN_EACH(analytics.scene_change, reserved, kReserved),
    IN_EACH(analytics.smd, reserved, kReserved),
    IN_EACH(analytics.vehicle_detection.schedule.segment, reserved, kReserved),
    MEMBER(reserved_traffic, kReserved),
    MEMBER(traffic_event.alg_cfg.reserved, kReserved),
    MEMBER(traffic_event.reserved_overlap, kReserved),
    IN_EACH(traffic_event.preset_scene, reserved, kReserved),
    IN_EACH_OF_EACH(traffic_event.preset_scene, rule, reserved, kReserved),
    MEMBER(traffic_event.ftp.reserved, kReserved),
    MEMBER(traffic_event.ftp.reserved_end, kReserved),
    MEMBER(traffic_event.other_param.reserved, kReserved),
    IN_EACH(traffic.traffic.detect.schedule.segment, reserved, kReserved),
    IN_EACH(traffic.vehicle.detect.schedule.segment, reserved, kReserved),
    MEMBER(reserved_lock, kReserved),
    MEMBER(reserved_monitor, kReserved),
    FROM_TO(intel_moni.twin.alg_cfg.b_osd_overlay, intel_moni.twin.alg_cfg.reserved, kFirstTwinAlone),
    MEMBER(intel_moni.twin.reserved_overlap, kReserved),
    IN_EACH(intel_moni.twin.preset_scene, reserved, kReserved),
    IN_EACH_OF_EACH(intel_moni.twin.preset_scene, rule, line_param_nRuleSensitity, kFirstTwinAlone),
    IN_EACH_OF_EACH(intel_moni.twin.preset_scene, rule, lane_change_congestion_duration, kFirstTwinAlone),
    IN_EACH_OF_EACH(intel_moni.twin.preset_scene, rule, vehicle_exist_duration, kFirstTwinAlone),
    IN_EACH_OF_EACH(intel_moni.twin.preset_scene, rule, nRuleSensitity, kFirstTwinAlone),
    IN_EACH_OF_EACH(intel_moni.twin.preset_scene, rule, reserved, kReserved),
    MEMBER(intel_moni.twin.ftp.reserved, kReserved),
    MEMBER(intel_moni.twin.ftp.reserved_end, kReserved),
    FROM_TO(intel_moni.twin.other_param.ptz_oper_type, intel_moni.twin.other_param.ptz_oper_delay_time,
            kFirstTwinAlone),
    MEMBER(intel_moni.twin.other_param.reserved, kReserved),
    MEMBER(intel_moni.twin.alg_extension, kFirstTwinAlone),
    IN_EACH(intel_moni.mpr, reserved, kReserved),
    IN_EACH_OF_EACH(intel_moni.mpr, lane, reserved, kReserved),
    IN_EACH_OF_EACH(intel_moni.mpr, lane, further_param, kFactoryFile),
    from_to("intel_moni.mpr[].lane[4] to lane[15]", IN_EACH(intel_moni.mpr, lane[4], kFourLanes),
            IN_EACH(intel_moni.mpr, lane[15], kFourLanes)),
    MEMBER(intel_moni.mpr_trailing_block, kFactoryFile),
    MEMBER(reserved_platform, kReserved),
    IN_EACH(platform.sms_whitelist, reserved, kReserved),
    MEMBER(platform.zorvy.config.reserved, kReserved),
    MEMBER(platform.softap.reserved, kReserved),
    MEMBER(reserved_end, kReserved),
};

}  // namespace

std::span<const UnstoredMember> unstored_members() {
    return kMembers;
}

}  // namespace dbshell
