// What a power cut leaves of the files below a folder, by a record of what a program did to them.
//
// The storage may have lost, kept or torn whatever was not synced, in any order; names it keeps in their order.
// Nothing else is promised: a sync of a file is not one of its name, nor the other way round.
#ifndef TESTS_CUT_STATES_H
#define TESTS_CUT_STATES_H

#include <algorithm>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <map>
#include <random>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "recorder/recorded.h"

using Files = std::map<std::string, std::string>;  // contents by name, relative to the root

inline std::size_t hash_of(const Files& files) {
    std::size_t hash = 0;
    for (const auto& [name, bytes] : files)
        for (const std::string& part : {name, bytes})
            hash = hash * 1000003 + std::hash<std::string>()(part);
    return hash;
}

class CutStates {
  public:
    struct Operation {
        RecordedHeader what;
        std::string bytes;
    };
    // How the cut behind an operation is: which of the writes and truncations that were not synced are kept, and how
    // many of the changes of names.
    struct Cut {
        enum Kind { kept, dropped, all_but_one, only_one, torn, some, size_only, rubbish } kind;
        std::size_t behind;  // so many operations
        std::size_t one;     // all_but_one, only_one, torn: which; some: a seed
        std::size_t names;   // of those that were not synced
        std::size_t at = 0;  // torn: where, any number
    };

    // `inodes`: those of the files that were there before.
    CutStates(Files before, std::map<uint64_t, std::string> inodes, const std::string& log)
        : before_(std::move(before)), inodes_(std::move(inodes)) {
        std::ifstream in(log, std::ios::binary);
        for (RecordedHeader header{}; in.read(reinterpret_cast<char*>(&header), sizeof header);) {
            std::string bytes(header.length, '\0');
            in.read(bytes.data(), header.length);
            operations_.push_back({header, std::move(bytes)});
        }
    }

    const std::vector<Operation>& operations() const { return operations_; }

    // The requests that were answered before the cut.
    std::size_t replies(std::size_t behind) const {
        return static_cast<std::size_t>(
            std::count_if(operations_.begin(), operations_.begin() + static_cast<std::ptrdiff_t>(behind),
                          [](const Operation& o) { return o.what.kind == Recorded::reply; }));
    }

    // All cuts; behind each operation at most `most` that leave one write out, alone or torn, and so many random
    // subsets.  Those next to what makes a difference (a sync, a name, a reply) come first, otherwise the order is the
    // seed's.
    std::vector<Cut> cuts(std::size_t most, std::size_t subsets, unsigned seed) const {
        std::mt19937 random(seed);
        std::vector<Cut> first, rest;
        Disk disk(before_, inodes_);
        for (std::size_t k = 0; k <= operations_.size(); ++k) {
            const std::size_t writes = disk.writes.size(), names = disk.names.size();
            const bool turns =
                k == 0 || k == operations_.size() || turn(operations_[k - 1]) || turn(operations_[k]);
            auto& simple = turns ? first : rest;
            for (std::size_t n = 0; n <= names; ++n)
                for (const auto kind : {Cut::kept, Cut::dropped})
                    simple.push_back({kind, k, 0, n});
            for (const auto kind : {Cut::size_only, Cut::rubbish})
                simple.push_back({kind, k, 0, names});
            for (std::size_t s = 0; s < subsets; ++s)
                rest.push_back({Cut::some, k, random(), random() % (names + 1)});
            for (std::size_t n = 0; n < std::min(writes, most); ++n)
                for (const auto kind : {Cut::all_but_one, Cut::only_one, Cut::torn})
                    rest.push_back({kind, k, writes <= most ? n : random() % writes, names, random()});
            if (k < operations_.size())
                disk.apply(operations_[k]);
        }
        for (auto* list : {&first, &rest})
            std::shuffle(list->begin(), list->end(), random);
        first.insert(first.end(), rest.begin(), rest.end());
        return first;
    }

    Files after(const Cut& cut) const {
        Disk disk(before_, inodes_);
        for (std::size_t k = 0; k < cut.behind; ++k)
            disk.apply(operations_[k]);
        return disk.after(cut);
    }

  private:
    static bool turn(const Operation& o) {
        return o.what.kind != Recorded::write && o.what.kind != Recorded::truncate;
    }

    struct Disk {
        struct Pending {
            std::size_t file;
            const Operation* operation;
        };
        std::vector<std::string> contents;         // of all files, also of those without a name
        std::map<std::string, std::size_t> named;  // as synced
        std::map<uint64_t, std::size_t> by_inode;  // the file that has an inode at present
        std::vector<Pending> writes, names;        // not synced

        Disk(const Files& before, const std::map<uint64_t, std::string>& inodes) {
            for (const auto& [inode, name] : inodes) {
                by_inode[inode] = named[name] = contents.size();
                contents.push_back(before.at(name));
            }
        }

        void apply(const Operation& o) {
            switch (o.what.kind) {
                case Recorded::create:
                    by_inode[o.what.file] = contents.size();
                    contents.emplace_back();
                    names.push_back({by_inode[o.what.file], &o});
                    break;
                case Recorded::write:
                case Recorded::truncate:
                    writes.push_back({by_inode.at(o.what.file), &o});
                    break;
                case Recorded::rename:
                case Recorded::unlink:
                    names.push_back({0, &o});
                    break;
                case Recorded::sync: {
                    const std::size_t file = by_inode.at(o.what.file);
                    std::erase_if(writes, [&](const Pending& p) {
                        if (p.file == file)
                            change(contents[file], *p.operation, p.operation->bytes.size());
                        return p.file == file;
                    });
                    break;
                }
                case Recorded::sync_folder:
                    std::erase_if(names, [&](const Pending& p) {
                        const bool here =
                            std::filesystem::path(first_name(*p.operation)).parent_path() == o.bytes;
                        if (here)
                            change(named, p);
                        return here;
                    });
                    break;
                case Recorded::reply:
                    break;
            }
        }

        // So many bytes of a write, or a truncation.
        static void change(std::string& content, const Operation& o, std::size_t bytes) {
            const auto at = static_cast<std::size_t>(o.what.offset);
            if (o.what.kind == Recorded::truncate) {
                content.resize(at);
                return;
            }
            content.resize(std::max(content.size(), at + bytes));
            content.replace(at, bytes, o.bytes, 0, bytes);
        }
        // Up to one of the sectors' ends that lie in the write.
        static std::size_t torn_size(const Operation& o, std::size_t which) {
            const auto begin = static_cast<std::size_t>(o.what.offset);
            const std::size_t whole = o.bytes.size(), first = begin / kSector + 1;
            const std::size_t ends = whole == 0 ? 0 : (begin + whole - 1) / kSector + 1 - first;
            return ends == 0 ? whole : (first + which % ends) * kSector - begin;
        }
        static std::string first_name(const Operation& o) { return o.bytes.substr(0, o.bytes.find('\0')); }
        static void change(std::map<std::string, std::size_t>& files, const Pending& p) {
            const std::string name = first_name(*p.operation);
            if (p.operation->what.kind == Recorded::create) {
                files[p.operation->bytes] = p.file;
            } else if (const auto from = files.find(name); from != files.end()) {
                const std::size_t file = from->second;
                files.erase(from);
                if (p.operation->what.kind == Recorded::rename)
                    files[p.operation->bytes.c_str() + name.size() + 1] = file;
            }
        }

        Files after(const Cut& cut) {
            std::mt19937 random(static_cast<unsigned>(cut.one));
            for (std::size_t i = 0; i < writes.size(); ++i) {
                const Operation& o = *writes[i].operation;
                std::string& content = contents[writes[i].file];
                const bool one = i == cut.one;
                const std::size_t whole = o.bytes.size();
                switch (cut.kind) {
                    case Cut::kept:
                        change(content, o, whole);
                        break;
                    case Cut::dropped:
                        break;
                    case Cut::all_but_one:
                    case Cut::only_one:
                        if (one == (cut.kind == Cut::only_one))
                            change(content, o, whole);
                        break;
                    case Cut::torn:
                        change(content, o, one ? torn_size(o, cut.at) : whole);
                        break;
                    case Cut::some:
                        if (random() % 2 == 0)
                            change(content, o, whole);
                        break;
                    case Cut::size_only:
                    case Cut::rubbish:
                        content.resize(
                            std::max(content.size(), static_cast<std::size_t>(o.what.offset) + whole),
                            cut.kind == Cut::rubbish ? '\xa5' : '\0');
                        break;
                }
            }
            for (std::size_t i = 0; i < cut.names; ++i)
                change(named, names[i]);
            Files files;
            for (const auto& [name, file] : named)
                files[name] = std::move(contents[file]);
            return files;
        }
    };

    static constexpr std::size_t kSector = 512;

    const Files before_;
    const std::map<uint64_t, std::string> inodes_;
    std::vector<Operation> operations_;
};

#endif
