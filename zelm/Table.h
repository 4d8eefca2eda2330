#pragma once

#include <string>
#include <vector>

namespace Zelm
{

/// Texts in columns, as wide as what stands in them.
class Table
{
public:
    enum Side : char
    {
        Left,
        Right,
    };

    /// \param sides on which the texts of each column stand.
    explicit Table(std::vector<Side> sides) : sides_(std::move(sides)) {}

    /// \pre there is a text for each column.
    void add(std::vector<std::string> row) { rows_.push_back(std::move(row)); }

    /// A line for each row, each behind two blanks; without columns in which nothing stands.
    std::string text() const;

private:
    const std::vector<Side> sides_;
    std::vector<std::vector<std::string>> rows_;
};

} // namespace Zelm
