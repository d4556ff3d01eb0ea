// The members of the record that no table stores, and why.
#ifndef DBSHELL_UNSTORED_MEMBERS_H
#define DBSHELL_UNSTORED_MEMBERS_H

#include <cstdint>
#include <span>
#include <string_view>

namespace dbshell {

struct UnstoredMember {
    // Elements of an array, `stride` bytes from one to the next.
    struct Each {
        uint32_t count = 1, stride = 0;
    };

    std::string_view path;  // from the record; "[]" stands for every element of an array
    std::string_view reason;
    uint32_t offset, size;  // in bytes, of the first
    Each outer = {}, inner = {};
    uint64_t only = ~uint64_t{0};  // the elements of `outer` that are meant, one bit each
};

std::span<const UnstoredMember> unstored_members();

}  // namespace dbshell

#endif
