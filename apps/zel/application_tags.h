// SPDX-License-Identifier: MIT
// The tags of this program: the file and all that `zel list` knows of it, each with its true type.
//
//     <file(shortname)>      what the parameter table of the toolkit makes of a file's name
//     <width> x <height>     what the header of an image tells
//     <meta:exif:model>      a line of the metadata; registered when a template is prepared that asks for it
//
// Threads: complete before they are used by many; see CTags.

#pragma once

#include "file_facts.h"
#include <zeltools/tags/tag_value.h>
#include <zeltools/tags/tags.h>

#include <span>
#include <string>
#include <vector>

namespace zel {

/// How values come into an expansion.
enum class ValueStyle {
    Exact,    ///< As they are, for a program.
    Pipe,     ///< Control characters as \xHH.
    Terminal, ///< Bytes that are not UTF-8 too.
};

/// What a tag needs besides the file's name, size and date.
enum class TagNeeds {
    Nothing,
    Content,  ///< The file's header.
    Metadata, ///< The metadata in it.
};

/// What one expansion is about.
struct FileTagContext : CTags::CTagContext {
    FileFacts const* facts = nullptr;
    unsigned long long index = 1;   ///< From 1, in the order of the expansions.
    unsigned int counterDigits = 4; ///< How many `<counter>` has at least.
    ValueStyle style = ValueStyle::Exact;
};

/// A tag of this program.
struct ApplicationTag {
    char const* name; ///< Without brackets.
    _TAGDATA_INFO type;
    char const* group; ///< The label of its class.
    char const* friendly;
    char const* example;
    TagNeeds needs;
    /// Leaves the value empty where the file has no such fact.
    void (*fill)(FileTagContext const& context, CTagValue& value);
};

class CApplicationTags : public CTags {
public:
    /// The program's registry, which is the toolkit's application registry too.
    static CApplicationTags& Get();

    void InitTags() override;

    /// Gives the text of a tag for a FileTagContext, guarded: what a file holds is never read as a tag. A fact that the
    /// file does not have is an empty text.
    bool EvaluateTag(CTagContext const& context, CTagInfo const& info, CTagValue& value) override;

    /// Registers a tag that asks for metadata, unless it is. The name is what stands between "meta:" and the bracket:
    /// `%3C`, `%3E`, `%28` and `%25` stand for `<`, `>`, `(` and `%`, which a tag cannot hold.
    void AddMetadataTag(CXTString<char16_t> const& name);

    /// A tag's row; null for the conditional ones.
    static ApplicationTag const* FindRow(CTagInfo const& info);

    /// The tags in the order in which they are told of.
    static std::span<ApplicationTag const> GetRows();

private:
    std::vector<CXTString<char16_t>> metadataNames; ///< By the ids of their tags, which begin with 1.
};

/// "number", "file name", ...: a type in a person's words.
char const* TypeWord(unsigned int type);

} // namespace zel
