// User lists.  The users are packed: entries without a name are left out, the k-th that has one is row k, and row 1
// tells how many there are.  save[0] stores one user, save[1] their number, in the third index.
#include <algorithm>
#include <array>
#include <cstring>

#include "device_config.h"
#include "engine.h"
#include "messages.h"
#include "record_copy.h"
#include "walk.h"

namespace dbshell {

namespace {

constexpr std::string_view kAdministrator = "admin";

bool has_name(const UserEntry& user) {
    return user.username[0] != '\0';
}

bool is_administrator(const UserEntry& user) {
    return std::string_view(user.username, strnlen(user.username, sizeof user.username)) == kAdministrator;
}

// The first entry becomes the administrator, with what an administrator elsewhere in the list has; another user who
// has the first entry moves to the first empty one.  `stored` tells which entries are.  False when none is empty: then
// nothing is changed.
bool put_administrator_first(const Table& t, std::byte* copy, UserEntry* users, bool* stored) {
    const int count = t.row_count();
    const auto set = [&](int i, const UserEntry& user) {
        set_in_both(copy, t.layout.base + static_cast<std::size_t>(i) * sizeof user, &user, sizeof user);
        stored[i] = has_name(user);
    };
    UserEntry first = users[0];
    if (has_name(first) && !is_administrator(first)) {
        const UserEntry* const empty = std::find_if_not(users + 1, users + count, has_name);
        if (empty == users + count)
            return false;
        set(static_cast<int>(empty - users), first);
        log_table(t, t.set, "a user was in the administrator's place and has moved to entry %d\n",
                  {.number = empty - users}, kWarning);
        first = {};
        const UserEntry* const other = std::find_if(users + 1, users + count, is_administrator);
        if (other != users + count) {
            first = *other;
            set(static_cast<int>(other - users), UserEntry{});
        }
    }
    std::memset(first.username, 0, sizeof first.username);
    kAdministrator.copy(first.username, kAdministrator.size());
    first.permission = 0xFFFFFFFF;
    first.priority = first.user_level = 2;
    first.preview_permision = first.record_permision = 0xFFFFFFFF;
    first.playback_permision = first.ptzctrl_permision = 0xFFFFFFFF;
    const bool was_stored = stored[0];  // an entry without a name becomes a row with the next save
    set(0, first);
    stored[0] = was_stored;
    return true;
}

}  // namespace

Status save_packed(const Table& t, std::byte* copy) {
    auto* users = reinterpret_cast<UserEntry*>(copy + t.layout.base);
    const int count = t.row_count();
    std::array<bool, std::size(UserSection{}.user)> stored{};
    for (int i = 0; i < count; ++i)
        stored[static_cast<std::size_t>(i)] = has_name(users[i]);
    if (t.administrator && !put_administrator_first(t, copy, users, stored.data())) {
        log_table(t, t.set, "no entry is free for the user in the administrator's place\n");
        return Cause::other;
    }
    if (const Status s = ensure_rows(t, t.set, {}, t.counts()); !s.ok())
        return s;
    int packed = 0;
    for (int i = 0; i < count; ++i) {
        if (!stored[static_cast<std::size_t>(i)])
            continue;
        // Row k takes its values from entry i.
        const Index row{0, packed++};
        const std::byte* base =
            copy + static_cast<std::ptrdiff_t>(i - row[1]) * static_cast<std::ptrdiff_t>(sizeof(UserEntry));
        if (const Status s = store_row(t, t.save[0], base, row, t.counts()); !s.ok()) {
            log_store_failure(t, t.save[0], t.set, s, base, row, t.counts(), kError);
            return s;
        }
    }
    const Index number{0, 0, packed};
    const Status s = store_row(t, t.save[1], copy, number, t.counts());
    if (!s.ok())
        log_store_failure(t, t.save[1], t.set, s, copy, number, t.counts(), kError);
    return s;
}

Status load_packed(const Table& t) {
    Rows rows(t);
    int64_t users = 0;
    for (int i = 0; rows.next(); ++i) {
        if (i == 0)
            users = std::min<int64_t>(rows.key("user_num").value_or(0), t.row_count());
        if (i >= users || rows.is_null(rows.column("username")))
            break;
        rows.read(t, t.save[0], record_base(), {0, i});
    }
    if (rows.error() != 0) {
        log_table(t, t.get, t.says.open, {.number = rows.error()});
        return {Cause::query, rows.error()};
    }
    return {};
}

}  // namespace dbshell
