// SPDX-License-Identifier: MIT
// A host with tags of its own, whose values stand in a table.
//
//     TableTags tags;
//     tags.Add(u"<x>", u"value");
//     tags.Expand(u"a <x>");        // "a value"

#pragma once

#include "zeltools/tags/tag_value.h"
#include "zeltools/tags/tags.h"

#include <functional>
#include <map>
#include <string>

class TableTags : public CTags {
public:
    static constexpr unsigned int Class = 0x54455354;

    /// Gives the value of a tag; false leaves the tag in the text.
    using Function = std::function<bool(CTagInfo const& info, CTagValue& value)>;

    TableTags() { InitTags(); }

    /// Registers a tag whose value is a text, followed by the tag's parameters.
    void Add(std::u16string const& name, std::u16string const& text) {
        Add(name, [text](CTagInfo const& info, CTagValue& value) {
            value.SetText((text + static_cast<char16_t const*>(info.GetParameters())).c_str());
            return true;
        });
    }

    void Add(std::u16string const& name, Function const& function) {
        functions[name] = function;
        Insert(name.c_str(), TAGDATA_TEXT, Class, static_cast<unsigned int>(functions.size()), "a tag");
    }

    /// Registers a tag without a class name, and with no value where there is no callback.
    void Insert(CXTString<char16_t> const& name, unsigned int type, unsigned int tagClass, unsigned int id,
                char const* label = "", TagCallback callback = nullptr, void* data = nullptr) {
        InsertTag(name, type, tagClass, id, label, CTagInfo::NoClassName, callback, data);
    }

    std::u16string Expand(std::u16string const& text) {
        evaluations = 0;
        CXTString<char16_t> copy(text.c_str(), static_cast<int>(text.size()));
        ProcessText(CTagContext(), copy);
        return {copy, static_cast<std::size_t>(copy.GetLength())};
    }

    bool EvaluateTag(CTagContext const&, CTagInfo const& info, CTagValue& value) override {
        ++evaluations;
        auto const function = functions.find(static_cast<char16_t const*>(info.GetTagName()));
        return function != functions.end() && function->second(info, value);
    }

    unsigned int evaluations = 0; ///< since the last Expand began

private:
    std::map<std::u16string, Function> functions;
};
