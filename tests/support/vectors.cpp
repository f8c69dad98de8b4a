// SPDX-License-Identifier: MIT
#include "tests/support/vectors.h"

#include <algorithm>
#include <charconv>
#include <fstream>
#include <stdexcept>

namespace vectors {

namespace {

[[noreturn]] void Fail(std::string_view what, std::string_view where) {
    throw std::runtime_error(std::string(what) + ": " + std::string(where));
}

template <typename Number>
Number ParseNumber(std::string_view text, int base) {
    Number number{};
    auto const [end, error] = std::from_chars(text.data(), text.data() + text.size(), number, base);
    if (error != std::errc{} || end != text.data() + text.size())
        Fail("not a number", text);
    return number;
}

// `numeric` is the letter of the numeric escape that this kind of cell may hold, followed by `digits` digits.
template <typename Text>
Text Decode(std::string_view cell, char numeric, std::size_t digits) {
    using Unit = typename Text::value_type;
    Text text;
    for (std::size_t i = 0; i < cell.size(); ++i) {
        if (cell[i] != '\\') {
            text.push_back(static_cast<Unit>(static_cast<unsigned char>(cell[i])));
            continue;
        }
        char const letter = ++i < cell.size() ? cell[i] : '\0';
        constexpr std::string_view letters = "\\tnr";
        if (std::size_t const at = letters.find(letter); at != letters.npos) {
            text.push_back(static_cast<Unit>("\\\t\n\r"[at]));
        } else if (letter == numeric && i + digits < cell.size()) {
            text.push_back(static_cast<Unit>(ParseNumber<unsigned>(cell.substr(i + 1, digits), 16)));
            i += digits;
        } else {
            Fail("escape that this cell cannot hold", cell);
        }
    }
    return text;
}

} // namespace

std::u16string DecodeWide(std::string_view cell) {
    return Decode<std::u16string>(cell, 'u', 4);
}

std::string DecodeNarrow(std::string_view cell) {
    return Decode<std::string>(cell, 'x', 2);
}

std::vector<std::string> Split(std::string_view text, std::string_view separator) {
    std::vector<std::string> parts;
    for (std::size_t end; (end = text.find(separator)) != std::string_view::npos;) {
        parts.emplace_back(text.substr(0, end));
        text.remove_prefix(end + separator.size());
    }
    parts.emplace_back(text);
    return parts;
}

Row::Row(std::string place, std::shared_ptr<std::vector<std::string> const> columns, std::vector<std::string> cells)
    : m_place(std::move(place)), m_columns(std::move(columns)), m_cells(std::move(cells)) {
    if (m_cells.size() != m_columns->size())
        Fail("count of cells differs from the header's", m_place);
}

std::string const& Row::Raw(std::string_view column) const {
    auto const found = std::find(m_columns->begin(), m_columns->end(), column);
    if (found == m_columns->end())
        Fail("no column " + std::string(column), m_place);
    return m_cells[static_cast<std::size_t>(found - m_columns->begin())];
}

long long Row::Number(std::string_view column) const {
    return ParseNumber<long long>(Raw(column), 10);
}

unsigned long long Row::Hex(std::string_view column) const {
    return ParseNumber<unsigned long long>(Raw(column), 16);
}

bool Row::Truth(std::string_view column) const {
    std::string const& cell = Raw(column);
    if (cell != "0" && cell != "1")
        Fail("not a truth value in " + std::string(column), m_place);
    return cell == "1";
}

std::ostream& operator<<(std::ostream& stream, Row const& row) {
    stream << row.m_place;
    for (std::string const& cell : row.m_cells)
        stream << " | " << cell;
    return stream;
}

std::vector<Row> ReadTable(std::string_view name) {
    std::string const file = std::string(name) + ".tsv";
    std::ifstream stream(ZELTOOLS_TEST_DATA "/vectors/" + file, std::ios::binary);
    std::string line;
    if (!std::getline(stream, line))
        Fail("cannot be read", file);
    auto const columns = std::make_shared<std::vector<std::string> const>(Split(line, "\t"));
    std::vector<Row> rows;
    for (int number = 2; std::getline(stream, line); ++number)
        rows.emplace_back(file + ":" + std::to_string(number), columns, Split(line, "\t"));
    if (rows.empty())
        Fail("has no rows", file);
    return rows;
}

std::vector<DocumentedRow> ReadDocumented(std::string_view table) {
    std::vector<DocumentedRow> rows;
    for (Row const& row : ReadTable("documented")) {
        if (row.Raw("function") == table)
            rows.push_back({Split(row.Raw("input"), " | "), row.Raw("answer"), "documented.tsv: " + row.Raw("input")});
    }
    if (rows.empty())
        Fail("no documented row", table);
    return rows;
}

} // namespace vectors
