#include "record_cells.h"

#include <algorithm>

namespace dbshell {

std::vector<int> naming_levels(const Table& t) {
    std::vector<int> levels;
    for (int level = 0; level <= t.row_level(); ++level)
        if ((level == 0 && t.layout.owner != Owner::none) || t.count(level) > 1)
            levels.push_back(level);
    return levels;
}

std::vector<Index> rows_of(const Table& t) {
    std::vector<Index> rows{Index{}};
    for (int level = 0; level <= t.row_level(); ++level) {
        std::vector<Index> more;
        for (Index row : rows)
            for (row[level] = 0; row[level] < t.count(level); ++row[level])
                more.push_back(row);
        rows = more;
    }
    return rows;
}

std::vector<Cell> cells_of_row(const Table& t, Index index) {
    std::vector<Cell> cells;
    if (t.strategy == Strategy::read_only)
        return cells;
    for (const Statement& s : t.save) {
        if (!s.serves(index[t.row_level()]))
            continue;
        for (const Field& f : s.fields) {
            if (f.constant)
                continue;
            const uint32_t offset = field_offset(t, s, f, index);
            const bool known = std::any_of(cells.begin(), cells.end(), [&](const Cell& c) {
                return c.field->name == f.name && c.offset == offset;
            });
            if (!known)
                cells.push_back({&t, &f, index, offset});
        }
    }
    return cells;
}

std::vector<Cell> cells_of_table(const Table& t) {
    std::vector<Cell> cells;
    for (const Index& row : rows_of(t)) {
        const auto more = cells_of_row(t, row);
        cells.insert(cells.end(), more.begin(), more.end());
    }
    return cells;
}

}  // namespace dbshell
