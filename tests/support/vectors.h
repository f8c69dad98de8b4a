// SPDX-License-Identifier: MIT
// Reads the tables of recorded answers in tests/data/vectors. A table is one TSV file with a header row; cells are
// asked for by the name of their column, and the escapes are undone by the question:
//
//     for (vectors::Row const& row : vectors::ReadTable("path_is_unc")) {
//         std::u16string const path = row.Wide("input");
//         EXPECT_EQ(platform::PathIsUNCW(path.c_str()), row.Truth("result")) << row;
//     }
//
// A missing file, an unknown column and a cell of another kind throw std::runtime_error with the place, so that a
// table that was not read never looks like a test that passed.

#pragma once

#include <cstddef>
#include <memory>
#include <ostream>
#include <string>
#include <string_view>
#include <vector>

namespace vectors {

/// Undoes the escapes of a cell of UTF-16 text. Throws for a byte escape.
[[nodiscard]] std::u16string DecodeWide(std::string_view cell);

/// Undoes the escapes of a cell of bytes. Throws for a UTF-16 escape.
[[nodiscard]] std::string DecodeNarrow(std::string_view cell);

/// Splits at every occurrence of a separator; text without one is a single part.
[[nodiscard]] std::vector<std::string> Split(std::string_view text, std::string_view separator);

/// One row of a table. Copies share the header.
class Row {
public:
    Row(std::string place, std::shared_ptr<std::vector<std::string> const> columns, std::vector<std::string> cells);

    /// The cell as it stands in the file, escapes included.
    [[nodiscard]] std::string const& Raw(std::string_view column) const;
    [[nodiscard]] std::u16string Wide(std::string_view column) const { return DecodeWide(Raw(column)); }
    [[nodiscard]] std::string Narrow(std::string_view column) const { return DecodeNarrow(Raw(column)); }
    /// A decimal number; the whole cell must be one.
    [[nodiscard]] long long Number(std::string_view column) const;
    /// A hexadecimal number without prefix, as wide as 64 bits.
    [[nodiscard]] unsigned long long Hex(std::string_view column) const;
    /// 1 or 0; anything else throws.
    [[nodiscard]] bool Truth(std::string_view column) const;
    /// Whether the cell is `-`: the recorded call gave no such value.
    [[nodiscard]] bool Missing(std::string_view column) const { return Raw(column) == "-"; }

    /// Writes file, line and the raw cells: what a failed expectation should show.
    friend std::ostream& operator<<(std::ostream& stream, Row const& row);

private:
    std::string m_place;
    std::shared_ptr<std::vector<std::string> const> m_columns;
    std::vector<std::string> m_cells;
};

/// Reads tests/data/vectors/NAME.tsv. Throws when it is absent, has no rows, or a row has too few or too many cells.
[[nodiscard]] std::vector<Row> ReadTable(std::string_view name);

/// A row of documented.tsv: what the published reference answers where a recording would mislead.
struct DocumentedRow {
    std::vector<std::string> inputs; ///< Raw cells, in the order of the table that the row would stand in.
    std::string answer;              ///< Raw.
    std::string place;
};

/// The rows of documented.tsv that belong to one table. Throws when there is none.
[[nodiscard]] std::vector<DocumentedRow> ReadDocumented(std::string_view table);

} // namespace vectors
