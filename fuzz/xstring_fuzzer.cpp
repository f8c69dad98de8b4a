// SPDX-License-Identifier: MIT
// Sequences of operations on a wide string beside a slow model of it, which says each operation's rule one character
// at a time over std::u16string.
#include "zeltools/foundation/xstring.h"

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <string>

namespace {

using Model = std::u16string;

void Require(bool condition) {
    if (!condition)
        std::abort();
}

class Input {
public:
    Input(std::uint8_t const* data, std::size_t size) : m_data(data), m_size(size) {}

    bool IsEmpty() const { return m_size == 0; }
    int Byte() {
        if (m_size == 0)
            return 0;
        --m_size;
        return *m_data++;
    }
    int Position() { return Byte() - 8; } // a few are negative, many are beyond the end
    char16_t Character() { return u"abABcC, \u00C9\u0161\uFF61\xD83D"[Byte() % 12]; }
    Model Text() {
        Model text;
        for (int count = Byte() % 12; count > 0; --count)
            text += Character();
        return text;
    }

private:
    std::uint8_t const* m_data;
    std::size_t m_size;
};

char16_t Lower(char16_t c) {
    return c >= u'A' && c <= u'Z' ? static_cast<char16_t>(c + 32) : c;
}

int Find(Model const& text, Model const& part, int start, bool noCase) {
    auto const same = [noCase](char16_t l, char16_t r) { return noCase ? Lower(l) == Lower(r) : l == r; };
    if (part.empty() || start < 0)
        return -1;
    for (std::size_t at = static_cast<std::size_t>(start); at < text.size();) {
        std::size_t matched = 0;
        while (matched < part.size() && at + matched < text.size() && same(text[at + matched], part[matched]))
            ++matched;
        if (matched == part.size())
            return static_cast<int>(at);
        at += matched ? matched : 1;
    }
    return -1;
}

int FindBackward(Model const& text, Model const& part, int start) {
    if (part.empty())
        return -1;
    int const length = static_cast<int>(text.size());
    for (int at = start < 0 || start >= length ? length - 1 : start; at >= 0;) {
        int matched = 0;
        while (matched < static_cast<int>(part.size()) && matched <= at &&
               text[static_cast<std::size_t>(at - matched)] ==
                   part[part.size() - 1 - static_cast<std::size_t>(matched)])
            ++matched;
        if (matched == static_cast<int>(part.size()))
            return at - matched + 1;
        at -= matched ? matched : 1;
    }
    return -1;
}

int Replace(Model& text, Model const& from, Model const& to, int maxCount, int end, int start) {
    int count = 0;
    if (maxCount == 0 || end == 0)
        return 0;
    for (int at = start; count != maxCount; at += static_cast<int>(to.size()), ++count) {
        at = Find(text, from, at, false);
        if (at < 0 || static_cast<unsigned>(at) >= static_cast<unsigned>(end))
            break;
        text.replace(static_cast<std::size_t>(at), from.size(), to);
    }
    return count;
}

int Remove(Model& text, Model const& part, bool noCase, int maxCount) {
    int count = 0;
    for (int at = 0; count != maxCount && (at = Find(text, part, at, noCase)) >= 0; ++count)
        text.erase(static_cast<std::size_t>(at), part.size());
    return count;
}

Model Filter(Model const& text, Model const& set, bool wanted) {
    Model kept;
    std::copy_if(text.begin(), text.end(), std::back_inserter(kept),
                 [&](char16_t c) { return (set.find(c) != Model::npos) == wanted; });
    return kept;
}

Model Middle(Model const& text, int first, int count) {
    std::size_t const from = std::min(static_cast<std::size_t>(std::max(first, 0)), text.size());
    return text.substr(from, count == -1 ? Model::npos : static_cast<std::size_t>(std::max(count, 0)));
}

void Step(Input& input, CXTString<char16_t>& text, Model& model) {
    int const operation = input.Byte() % 16;
    Model const piece = input.Text();
    char16_t const character = input.Character();
    int const position = input.Position();
    int const count = input.Position();
    bool const flag = input.Byte() % 2;
    bool const isInside = position >= 0 && static_cast<std::size_t>(position) < model.size();
    std::size_t const place = isInside ? static_cast<std::size_t>(position) : 0;
    char16_t const* const part = piece.c_str();

    switch (operation) {
    case 0:
        text += part;
        model += piece;
        break;
    case 1:
        text += character;
        model += character;
        break;
    case 2:
        text += CXTString<char16_t>(part);
        text += text;
        model += piece;
        model += Model(model);
        break;
    case 3:
        text.Insert(position, CXTString<char16_t>(part));
        if (isInside || position == static_cast<int>(model.size()))
            model.insert(static_cast<std::size_t>(position), piece);
        break;
    case 4:
        text.Delete(position, count);
        if (isInside && count > 0)
            model.erase(place, static_cast<std::size_t>(count));
        break;
    case 5:
        Require(text.Remove(part, flag, count < -1 ? -1 : count) ==
                Remove(model, piece, flag, count < -1 ? -1 : count));
        break;
    case 6: {
        Model const to = input.Text();
        int const end = input.Position();
        int const limit = std::max(count, -1);
        Require(text.Replace(part, to.c_str(), limit, std::max(end, -1), position) ==
                (isInside && !piece.empty() ? Replace(model, piece, to, limit, std::max(end, -1), position) : 0));
        break;
    }
    case 7:
        text.MakeLower(std::max(count, -1));
        std::transform(model.begin(),
                       count < 0 ? model.end() : model.begin() + std::min<std::ptrdiff_t>(count, std::ssize(model)),
                       model.begin(), Lower);
        break;
    case 8:
        text.Trim(part);
        model.erase(0, std::min(model.find_first_not_of(piece), model.size()));
        model.erase(model.find_last_not_of(piece) + 1);
        break;
    case 9:
        text = text.Mid(position, std::max(count, -1));
        model = Middle(model, position, std::max(count, -1));
        break;
    case 10:
        text = flag ? text.SpanIncluding(part) : text.SpanExcluding(part);
        model = Filter(model, piece, flag);
        break;
    case 11: {
        Model joined;
        int next = position;
        do {
            joined += text.Tokenize(part, next);
        } while (next >= 0);
        Require(joined == (isInside && !piece.empty() ? Filter(model.substr(place), piece, false) : Model()));
        break;
    }
    case 12:
        Require(text.Find(part, position, flag) == Find(model, piece, position, flag));
        Require(text.Find(character, position) == (isInside ? static_cast<int>(model.find(character, place)) : -1));
        break;
    case 13:
        Require(text.ReverseFind(part, position) == FindBackward(model, piece, position));
        Require(text.ReverseFind(character, position) == FindBackward(model, Model(1, character), position));
        break;
    case 14:
        if (isInside) {
            text.SetAt(position, character);
            model[place] = character;
            text = text.GetAtPtr(position);
            model.erase(0, place);
        }
        break;
    default:
        Require((text.Compare(part) > 0) == (model.compare(piece) > 0) && (text == part) == (model == piece));
        text.Copy(part, std::min(count, static_cast<int>(piece.size())));
        model = piece.substr(0, static_cast<std::size_t>(std::max(count, 0)));
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size) {
    Input input(data, size);
    CXTString<char16_t> text;
    Model model;
    while (!input.IsEmpty()) {
        Step(input, text, model);
        Require(model == Model(text.GetConstBuffer(), static_cast<std::size_t>(text.GetLength())));
        Require(text.GetConstBuffer()[text.GetLength()] == 0);
        if (model.size() > 4096) {
            text.Empty();
            model.clear();
        }
    }
    return 0;
}
