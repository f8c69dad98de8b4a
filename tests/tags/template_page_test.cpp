// SPDX-License-Identifier: MIT
// The rows of docs/template-language.md that tell what the library does with a text.

#include "tests/support/format_page.h"
#include "tests/tags/table_tags.h"
#include "zeltools/foundation/string_conversion.h"

#include <gtest/gtest.h>

namespace {

TEST(TemplatePage, RowsExpandAsTheyAreShown) {
    TableTags tags;
    tags.Add(u"<name>", u"oak");
    tags.Add(u"<empty>", u"");
    tags.Add(u"<two>", u"<name>, <name>");
    for (support::FencedBlock const& block : support::FencedBlocks("template-language", "expansion")) {
        for (std::string const& line : block.lines) {
            std::size_t const first = line.find('|');
            std::size_t const second = line.find('|', first + 1);
            ASSERT_NE(second, std::string::npos) << line;
            auto const trimmed = [](std::string text) {
                text.erase(text.find_last_not_of(' ') + 1);
                return text.substr(std::min(text.find_first_not_of(' '), text.size()));
            };
            CXTString<char16_t> text(trimmed(line.substr(0, first)).c_str());
            tags.ProcessText(CTags::CTagContext(), text);
            EXPECT_EQ(static_cast<char const*>(XCW2A(text, xEncodingUtf8)),
                      trimmed(line.substr(first + 1, second - first - 1)));
        }
    }
}

} // namespace
