#include "record_copy.h"

#include <algorithm>
#include <cstring>
#include <map>
#include <vector>

#include "device_config.h"
#include "state.h"

namespace dbshell {

namespace {

struct Extent {
    std::size_t from, to;
};

// What of the record a table's save reads: the rows with all between them, and each member elsewhere.
std::vector<Extent> extents_of(const Table& t) {
    Index last = t.counts();
    for (int& i : last.at)
        --i;
    std::vector<Extent> extents;
    Extent rows{sizeof(DEVICECONFIG), 0};
    for (const Statement& s : t.save) {
        Index first, final = last;
        first[t.row_level()] = s.first - 1;
        if (s.last != 0)
            final[t.row_level()] = s.last - 1;
        for (const Field& f : s.fields) {
            if (f.constant)
                continue;
            const Extent extent{field_offset(t, s, f, first),
                                field_offset(t, s, f, final) + std::size_t{f.size}};
            if (f.home == Home::record)
                extents.push_back(extent);
            else
                rows = {std::min(rows.from, extent.from), std::max(rows.to, extent.to)};
        }
    }
    if (rows.from < rows.to)
        extents.push_back(rows);
    for (const Schedule& s : t.schedules) {
        const SchedulePlaces places = places_of(t, s);
        extents.push_back({places.first, places.offset(last) + s.size});
    }
    return extents;
}

alignas(DEVICECONFIG) std::byte copy[sizeof(DEVICECONFIG)];

}  // namespace

std::byte* take_from_record(const Table& t) {
    static std::map<const Table*, std::vector<Extent>> known;
    auto found = known.find(&t);
    if (found == known.end())
        found = known.emplace(&t, extents_of(t)).first;
    const auto* record = reinterpret_cast<const std::byte*>(get_cfg_param());
    for (const Extent& e : found->second)
        std::memcpy(copy + e.from, record + e.from, e.to - e.from);
    return copy;
}

std::byte* record_shaped_buffer() {
    return copy;
}

void set_in_both(std::byte* taken, std::size_t offset, const void* bytes, std::size_t size) {
    std::memcpy(taken + offset, bytes, size);
    std::memcpy(reinterpret_cast<std::byte*>(get_cfg_param()) + offset, bytes, size);
}

}  // namespace dbshell
