// SPDX-License-Identifier: MIT
#include "zeltools/platform/shell_path.h"

#include "tests/support/vectors.h"

#include <functional>
#include <gtest/gtest.h>
#include <string>
#include <vector>

namespace platform {
namespace {

// Runs an in-place function on a copy; two units more than the text are there, as the canonical form needs.
std::u16string InPlace(std::u16string text, std::function<void(char16_t*)> const& change) {
    text.append(2, u'\0');
    change(text.data());
    return text.c_str();
}

TEST(ShellPath, QuestionsAnswerAsRecorded) {
    std::pair<char const*, bool (*)(std::u16string_view)> const questions[] = {
        {"path_is_unc", PathIsUNCW},
        {"path_is_unc_server", PathIsUNCServerW},
        {"path_is_unc_server_share", PathIsUNCServerShareW},
        {"path_is_relative", PathIsRelativeW},
        {"path_is_root", PathIsRootW},
        {"path_is_url", PathIsURLW},
        {"path_is_network_path", PathIsNetworkPathW},
    };
    for (auto const& [table, ask] : questions) {
        for (vectors::Row const& row : vectors::ReadTable(table)) {
            EXPECT_EQ(ask(row.Wide("input")), row.Truth("answer")) << row;
        }
    }
    for (vectors::DocumentedRow const& row : vectors::ReadDocumented("path_is_unc")) {
        EXPECT_EQ(PathIsUNCW(vectors::DecodeWide(row.inputs.at(0))), row.answer == "1") << row.place;
    }
}

TEST(ShellPath, FindsPartsAsRecorded) {
    for (auto const& [table, find] :
         {std::pair{"path_find_extension", &PathFindExtensionW}, {"path_find_file_name", &PathFindFileNameW}}) {
        for (vectors::Row const& row : vectors::ReadTable(table)) {
            std::u16string const path = row.Wide("input");
            EXPECT_EQ(find(path.c_str()) - path.c_str(), row.Number("offset")) << row;
        }
    }
}

TEST(ShellPath, CutsAsRecorded) {
    struct {
        char const* table;
        std::function<bool(char16_t*)> cut;
    } const cuts[] = {
        {"path_strip_to_root", PathStripToRootW},
        {"path_remove_file_spec", PathRemoveFileSpecW},
        {"path_canonicalize", [](char16_t* path) { return PathCanonicalizeW(path, path); }},
    };
    for (auto const& cut : cuts) {
        for (vectors::Row const& row : vectors::ReadTable(cut.table)) {
            bool answer = false;
            EXPECT_EQ(InPlace(row.Wide("input"), [&](char16_t* path) { answer = cut.cut(path); }), row.Wide("result"))
                << row;
            EXPECT_EQ(answer, row.Truth("returned")) << row;
        }
    }
    for (auto const& [table, cut] :
         {std::pair{"path_remove_extension", &PathRemoveExtensionW}, {"path_strip_path", &PathStripPathW}}) {
        for (vectors::Row const& row : vectors::ReadTable(table)) {
            EXPECT_EQ(InPlace(row.Wide("input"), cut), row.Wide("result")) << row;
        }
    }
}

TEST(ShellPath, CanonicalizesAsDocumented) {
    auto const canonical = [](std::u16string path) {
        return InPlace(std::move(path), [](char16_t* text) { PathCanonicalizeW(text, text); });
    };
    for (vectors::DocumentedRow const& row : vectors::ReadDocumented("path_canonicalize")) {
        EXPECT_EQ(canonical(vectors::DecodeWide(row.inputs.at(0))), vectors::DecodeWide(row.answer)) << row.place;
    }
    std::pair<char16_t const*, char16_t const*> const rows[] = {
        {u"\\\\server\\share\\..", u"\\\\server"}, {u"\\\\server\\..\\..\\a", u"\\\\a"},
        {u"C:\\a\\\\..\\b", u"C:\\a\\b"}, // an empty segment is one that .. takes away
        {u"\\\\?\\C:\\..\\a", u"\\\\?\\C:\\a"},    {u"\\\\?\\UNC\\s\\..\\..\\a", u"\\\\?\\UNC\\a"},
    };
    for (auto const& [path, expected] : rows) {
        EXPECT_EQ(canonical(path), expected);
    }
}

// A text that is said to be canonical must come back unchanged.
TEST(ShellPath, SkipsCanonicalizationOnlyWhereNothingChanges) {
    std::size_t skipped = 0;
    for (vectors::Row const& row : vectors::ReadTable("path_canonicalize")) {
        if (!PathNeedsCanonicalization(row.Wide("input"))) {
            EXPECT_EQ(row.Raw("input"), row.Raw("result")) << row;
            ++skipped;
        }
    }
    EXPECT_GT(skipped, 50U);
    EXPECT_FALSE(PathNeedsCanonicalization(u"C:\\a.b\\.c\\..d\\e.f"));
}

std::u16string RelativePath(std::u16string const& from, bool fromIsDirectory, std::u16string const& to,
                            bool toIsDirectory, bool expected) {
    char16_t out[MaxPath];
    EXPECT_EQ(PathRelativePathToW(out, from.c_str(), fromIsDirectory, to.c_str(), toIsDirectory), expected);
    return out;
}

TEST(ShellPath, GivesRelativePathsAsRecorded) {
    for (vectors::Row const& row : vectors::ReadTable("path_relative_path_to")) {
        EXPECT_EQ(RelativePath(row.Wide("from"), row.Truth("from_is_directory"), row.Wide("to"),
                               row.Truth("to_is_directory"), row.Truth("returned")),
                  row.Wide("result"))
            << row;
    }
    for (vectors::DocumentedRow const& row : vectors::ReadDocumented("path_relative_path_to")) {
        EXPECT_EQ(RelativePath(vectors::DecodeWide(row.inputs.at(0)), row.inputs.at(1) == "1",
                               vectors::DecodeWide(row.inputs.at(2)), row.inputs.at(3) == "1", true),
                  vectors::DecodeWide(row.answer))
            << row.place;
    }
}

// Widths in units, so that the expected texts can be counted.
std::u16string Compact(std::u16string path, int width) {
    path.resize(MaxPath);
    bool const isFit =
        PathCompactPathW(path.data(), width, [](std::u16string_view text) { return static_cast<int>(text.size()); });
    return isFit ? path.c_str() : u"does not fit";
}

TEST(ShellPath, CompactsUntilItFits) {
    struct {
        char16_t const* path;
        int width;
        char16_t const* compact;
    } const rows[] = {
        {u"C:\\path1\\path2\\sample", 10, u"...\\sample"},
        {u"C:\\path1\\path2\\sample", 9, u"sample..."},
        {u"C:\\path1\\path2\\sample", 3, u"..."},
        {u"C:\\path1\\path2\\sample", 2, u"does not fit"},
        {u"a\xD83D\xDE00xyz", 5, u"a..."}, // a surrogate pair is not cut in half
        {u"", 0, u""},
    };
    for (auto const& row : rows) {
        EXPECT_EQ(Compact(row.path, row.width), row.compact) << row.width;
    }
}

} // namespace
} // namespace platform
