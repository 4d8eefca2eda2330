#include "Table.h"

#include <algorithm>

namespace Zelm
{

std::string Table::text() const
{
    std::vector<std::size_t> widths(sides_.size(), 0);
    for (const auto& row : rows_)
        for (std::size_t at = 0; at < row.size(); ++at)
            widths[at] = std::max(widths[at], row[at].size());

    std::string lines;
    for (const auto& row : rows_)
    {
        std::string line;
        for (std::size_t at = 0; at < row.size(); ++at)
        {
            if (widths[at] == 0) continue;
            const std::string filling(widths[at] - row[at].size(), ' ');
            line += "  " + (sides_[at] == Left ? row[at] + filling : filling + row[at]);
        }
        line.erase(line.find_last_not_of(' ') + 1);
        lines += line + '\n';
    }
    return lines;
}

} // namespace Zelm
