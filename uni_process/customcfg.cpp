#include "customcfg.h"

#include <errno.h>
#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <iterator>
#include <memory>
#include <type_traits>

#include "DB_uni_process.h"
#include "device_config.h"
#include "device_paths.h"
#include "state.h"
#include "well_known.h"

namespace {

// The file, little-endian.  What is `unused` may hold anything.
struct FileScene {
    uint8_t preset_scene, unused[31];
    MprLine line;
    uint8_t further_param[84], unused_end[512];
};

struct FileLane {
    uint8_t enable, lane_num, unused[62];
    FileScene scene[4];
    MprLine line;
    uint8_t unused_end[256];
    uint8_t nearbn1, farbn1, nearbn2, farbn2;
};

struct CUSTOM_CFG_BIN {
    FileLane lane[16];
    uint8_t trailing_block[432];
};

static_assert(sizeof(CUSTOM_CFG_BIN) == 46768 && offsetof(CUSTOM_CFG_BIN, trailing_block) == 46336);
static_assert(sizeof(FileLane) == 2896 && offsetof(FileLane, lane_num) == 1 &&
              offsetof(FileLane, scene) == 64);
static_assert(offsetof(FileLane, line) == 2624 && offsetof(FileLane, nearbn1) == 2892);
static_assert(sizeof(FileScene) == 640 && offsetof(FileScene, line) == 32);
static_assert(offsetof(FileScene, further_param) == 44);

// Every byte, padding too.
template <class T>
void copy(T& to, const T& from) {
    std::memcpy(&to, &from, sizeof to);
}

void take_over_traffic_settings(const TrafficEventArea& from, TrafficEventArea& to) {
    copy(to.mointor_point, from.mointor_point);
    copy(to.pic_merge, from.pic_merge);
    to.pic_merge.vehicle_picture_quality = from.pic_merge.picture_quality;

    copy(to.char_overlap, from.char_overlap);
    copy(to.reserved_overlap, from.reserved_overlap);
    // Overlay items that these devices do not have.
    constexpr uint8_t kMissingItems[] = {9, 11, 12, 16, 17};
    std::replace_if(
        std::begin(to.char_overlap.text_content_index), std::end(to.char_overlap.text_content_index),
        [&](uint8_t item) {
            return std::count(std::begin(kMissingItems), std::end(kMissingItems), item) > 0;
        },
        uint8_t{0});

    copy(to.alg_cfg, from.alg_cfg);
    constexpr char kDefaultProvince[] = "\xD5\xE3";  // GB2312
    if (to.alg_cfg.default_chn[0] == '\0')
        std::memcpy(to.alg_cfg.default_chn, kDefaultProvince, sizeof kDefaultProvince);

    copy(to.monitor_center, from.monitor_center);
    copy(to.upload_time, from.upload_time);
    copy(to.cruise, from.cruise);
    copy(to.ftp, from.ftp);
    copy(to.ftp.event_dir_name, from.ftp.break_rule_dir_name);
    copy(to.ftp.plat_picture_name, from.ftp.break_rule_pic_name);
    copy(to.other_param, from.other_param);
    copy(to.preset_scene, from.preset_scene);
    copy(to.its_cap_param, from.its_cap_param);
    to.illegal_code = from.illegal_code;
    copy(to.alg_extension, from.alg_extension);
}

// False, errno telling why, or 0 for a short file.
bool read_whole(int file, CUSTOM_CFG_BIN& content) {
    auto* bytes = reinterpret_cast<unsigned char*>(&content);
    std::size_t length = 0;
    while (length < sizeof content) {
        errno = 0;
        const ssize_t n = read(file, bytes + length, sizeof content - length);
        if (n <= 0 && errno != EINTR)
            return false;
        length += n > 0 ? static_cast<std::size_t>(n) : 0;
    }
    return true;
}

void set_defaults(CUSTOM_CFG_BIN& content) {
    content = {};
    for (FileLane& lane : content.lane) {
        lane.lane_num = 1;
        lane.scene[0].preset_scene = 1;
        lane.scene[0].line = {100, 500, 100, 900, 0};
        lane.line = {900, 500, 900, 900, 0};
    }
}

void set_lanes(const CUSTOM_CFG_BIN& content, IntelligentMonitorArea& to) {
    static_assert(std::extent_v<decltype(CUSTOM_CFG_BIN::lane)> ==
                  std::extent_v<decltype(IntelligentMonitorArea::mpr)>);
    for (MprRecord* row = to.mpr; const FileLane& lane : content.lane) {
        row->enable = lane.enable;
        row->lane_num = lane.lane_num;
        for (MprLane* to_scene = row->lane; const FileScene& scene : lane.scene) {
            to_scene->lane_no = scene.preset_scene;
            to_scene->line = scene.line;
            copy(to_scene->further_param, scene.further_param);
            ++to_scene;
        }
        row->line = lane.line;
        row->nearbn1 = lane.nearbn1;
        row->farbn1 = lane.farbn1;
        row->nearbn2 = lane.nearbn2;
        row->farbn2 = lane.farbn2;
        ++row;
    }
    copy(to.mpr_trailing_block, content.trailing_block);
}

void print_points(const FileLane& lane) {
    std::printf("lane_num = %d\n", lane.lane_num);
    for (int s = 0; const FileScene& scene : lane.scene) {
        std::printf("****######preset_scene[%d]first_point.x = %d\n", s, scene.line.p1x);
        std::printf("****######preset_scene[%d]first_point.y = %d\n", s, scene.line.p1y);
        std::printf("****######preset_scene[%d]seond_point.x = %d\n", s, scene.line.p2x);
        std::printf("****######preset_scene[%d]seond_point.y = %d\n", s, scene.line.p2y);
        ++s;
    }
}

}  // namespace

int read_customcfg() {
    std::printf(
        "read customcfg.bin ***************!!!!!!!!!! sizeof(CUSTOM_CFG_BIN)=%d (46768 bytes is OK)!!!!!!!!!!!.\n",
        static_cast<int>(sizeof(CUSTOM_CFG_BIN)));
    DEVICECONFIG* record = get_cfg_param();
    if (record == nullptr)
        return -1;
    if (!device_has(1, Capability::intelligent_monitor))
        return 0;
    take_over_traffic_settings(record->traffic_event, record->intel_moni.twin);

    const auto content = std::make_unique<CUSTOM_CFG_BIN>();
    const int file = open(device_path(kLaneParameterFile).c_str(), O_RDWR | O_CLOEXEC);
    if (file < 0)
        std::printf("open customcfg.bin,errno=%d.\n", errno);
    if (read_whole(file, *content)) {
        std::printf("******************read customcfg ok********************");
    } else {
        std::printf("read TRAFFIC_MPR parameter file error, errno=%d.\n", errno);
        set_defaults(*content);
    }
    set_lanes(*content, record->intel_moni);
    print_points(content->lane[0]);
    return close(file);
}
