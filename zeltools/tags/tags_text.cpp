// SPDX-License-Identifier: MIT
// The expansion of a template. Each round reads one token, the run of characters up to the next "<" or ">", and asks
// whether it is the inside of a tag:
//
//     Taken in <picture(createdate(d))>.
//              ^ start                  ^ behind the token
//
// A tag is taken out from `start` on, and its value is put there and read next. A value may hold tags, may be only a
// part of one that the text around it completes, and may open and close blocks; so the place of reading goes back and
// forth, but only over what was just read or inserted.
#include "zeltools/foundation/character_scan_private.h"
#include "zeltools/foundation/characters.h"
#include "zeltools/foundation/log_file.h"
#include "zeltools/foundation/stack.h"
#include "zeltools/tags/tag_lookup_cache_private.h"
#include "zeltools/tags/tag_text_buffer_private.h"
#include "zeltools/tags/tag_value.h"
#include "zeltools/tags/tags.h"

#include <climits>
#include <optional>
#include <string_view>

namespace {

/// A start in front of the text: the first token of a text that does not open with "<" is tried as a tag, too.
constexpr int NoStart = -1;

/// A block that is open: where the "<" of its marker stands, and whether it is to stay.
struct IfInfo {
    int start = NoStart;
    bool keep = false;
};

/// The blocks that are open.
class IfStack : public CStack<IfInfo> {
public:
    /// Keeps all of them. Those below `kept` are kept already, so that a deep nest of blocks costs each record once.
    void KeepAll() {
        kept = std::min(kept, top + 1);
        for (; kept <= top; ++kept)
            items[kept].keep = true;
    }
    void DropTop() {
        Drop();
        kept = std::min(kept, top + 1);
    }

private:
    int kept = 0;
};

/// What a value has inserted and is still to be read, by its distance to the end of the text.
struct Region {
    std::size_t end = 0;         ///< characters of the text behind it
    unsigned int generation = 0; ///< 1 for the value of a tag of the template, 2 for that of a tag in such a value, ...
};

/// The values that are being read, each inside the one below it.
class Regions {
public:
    /// The generation of what stands `distance` characters in front of the end of the text; 0 for the template.
    unsigned int GenerationAt(std::size_t distance) {
        DropReadUpTo(distance);
        return stack && !stack->IsEmpty() ? stack->Top()->generation : 0;
    }

    /// A value with tags was inserted in front of the last `end` characters.
    void Push(std::size_t end, unsigned int generation) {
        DropReadUpTo(end);
        if (!stack)
            stack.emplace();
        stack->Push(Region{end, generation});
    }

private:
    void DropReadUpTo(std::size_t distance) {
        while (stack && !stack->IsEmpty() && stack->Top()->end >= distance)
            stack->Drop();
    }

    std::optional<CStack<Region>> stack; ///< made for the first value that has tags, which few have
};

constexpr bool IsDelimiter(char16_t unit) {
    return unit == u'<' || unit == u'>';
}

enum class Stop {
    AtDelimiter,
    AtZeroToo
};

/// The place of the first delimiter, or of the first zero if asked, or the length.
template <Stop Where>
std::size_t FindDelimiter(char16_t const* text, std::size_t length) {
    std::size_t at = 0;
#if defined(__SSE2__)
    using Block = detail::Block<char16_t>;
    static_assert((u'<' | 2) == u'>');
    for (; at + Block::Size <= length; at += Block::Size) {
        __m128i const block = Block::Load(text + at);
        __m128i stops = Block::Equal(_mm_or_si128(block, Block::All(2)), Block::All(u'>'));
        if constexpr (Where == Stop::AtZeroToo)
            stops = _mm_or_si128(stops, Block::Equal(block, Block::All(0)));
        if (unsigned const bits = Block::Bits(stops))
            return at + Block::First(bits);
    }
#endif
    while (at < length && !IsDelimiter(text[at]) && (Where == Stop::AtDelimiter || text[at]))
        ++at;
    return at;
}

constexpr std::u16string_view Opener = u"<tagifexist>";
constexpr std::u16string_view Closer = u"</tagifexist>";
constexpr std::u16string_view OtherCloser = u"<tagendifexist>";

// What stopped an expansion, for the log.
constexpr char const* NeverClosed = "a tag or block that nothing closes";
constexpr char const* OwnTag = "a value that comes out of itself";
constexpr char const* TooManyNested = "tags in values";
constexpr char const* TooLong = "the length";
constexpr char const* TooDeep = "templates in each other's evaluation";

/// Counts the calls of the calling thread that are inside each other.
class CallDepth {
public:
    CallDepth() { ++calls; }
    ~CallDepth() { --calls; }
    CallDepth(CallDepth const&) = delete;
    CallDepth& operator=(CallDepth const&) = delete;
    unsigned int Get() const { return calls; }

private:
    static thread_local unsigned int calls;
};
thread_local unsigned int CallDepth::calls = 0;

/// Of zeros and of nothing that is destroyed, so it may be used as long as its thread runs.
constinit thread_local detail::TagLookupCache lookupCache;

} // namespace

/// The work of one call of ProcessText.
class CTags::TextExpansion {
public:
    TextExpansion(CTags& owner, CTagContext const& about, CXTString<char16_t> const& text)
        : tags(owner), context(about), cache(lookupCache), limits(owner.textLimits),
          buffer(text, static_cast<std::size_t>(text.GetLength())), originalLength(buffer.Length()) {}

    /// Expands to the end, or until a limit is met.
    /// @return the limit in words, or null.
    char const* Run() {
        while (more && !exceeded)
            ReadToken();
        return exceeded;
    }

    /// The text as it stands.
    void GetText(CXTString<char16_t>& text) {
        std::size_t const length = buffer.Length();
        text.Assign(buffer.Join(), length);
    }

private:
    /// What was read of the rest, delimiters in front of the token included.
    struct Token {
        int start;            ///< of the tag, were it one
        std::size_t distance; ///< of the token's first character from the end of the text
        std::size_t read;     ///< characters up to behind the delimiter
        bool closed;          ///< whether a delimiter ended the token; the end of the text else
    };

    void ReadToken();
    void ReadTag(Token const& token, char16_t const* text, std::size_t length);
    void Evaluate(Token const& token);
    void CloseBlock(Token const& token);
    void ReplaceTag(Token const& token, unsigned int generation);
    void SetCandidate(char16_t const* text, std::size_t length);

    bool HasBlock() const { return blocks && !blocks->IsEmpty(); }

    /// Leaves the token in the text and goes on behind it.
    void Keep(Token const& token) {
        buffer.Advance(token.read);
        more = token.closed;
    }

    /// How many characters a value may have that stands in the text beside so many others.
    /// @param isEndless  Whether there may be no end of such values.
    std::size_t Room(std::size_t others, bool isEndless) const {
        std::size_t longest = INT_MAX;
        if (isEndless)
            longest = std::min(longest, originalLength + static_cast<std::size_t>(std::max(limits.length, 0)));
        return longest - std::min(longest, others);
    }

    /// Counts that the end of the text is taken up again, with so many characters to read anew.
    /// @return whether that may be.
    bool ReadAgain(std::size_t count) {
        reread += count;
        if (++resumed > limits.chain || reread > static_cast<std::size_t>(std::max(limits.length, 0)))
            exceeded = NeverClosed;
        return !exceeded;
    }

    CTags& tags;
    CTagContext const& context;
    detail::TagLookupCache& cache; ///< the thread's
    TagTextLimits const limits;
    detail::TagTextBuffer buffer;
    std::size_t const originalLength;
    std::optional<IfStack> blocks; ///< made for the first block
    Regions values;
    CXTString<char16_t> candidate;
    bool hasChain = false; ///< whether the candidate has parameters
    CXTString<char16_t> parameters;
    CTagInfo info;   ///< the tag that is evaluated; a copy, since a host may insert tags meanwhile
    CTagValue value; ///< one for all tags; the next one finds it as the last one left it
    bool more = true;
    char const* exceeded = nullptr;
    unsigned int nested = 0;  ///< tags met in values
    unsigned int resumed = 0; ///< how often the end was taken up again, and with how many characters
    std::size_t reread = 0;
    unsigned long long events = 0; ///< evaluations and blocks that went: all that may change the text or its course
    unsigned long long eventsAtRewind = ~0ULL;
};

void CTags::TextExpansion::ReadToken() {
    char16_t const* const rest = buffer.Rest();
    std::size_t const length = buffer.RestLength();
    std::size_t first = 0;
    while (first < length && IsDelimiter(rest[first]))
        ++first;
    std::size_t const last = first + FindDelimiter<Stop::AtDelimiter>(rest + first, length - first);
    if (first == last) {
        more = false;
        return;
    }
    Token token{static_cast<int>(buffer.DoneLength()), length - first, last, last < length};
    token.read += token.closed;
    // What closed the token before may have been the "<" of this one.
    if (rest[0] != u'<') {
        if (token.start > 0 && buffer.LastDone() != u'<')
            return Keep(token);
        --token.start;
    }
    if (CTagInfo const* const known = cache.Find(tags.state, rest + first, last - first)) {
        info = *known;
        return Evaluate(token);
    }
    ReadTag(token, rest + first, last - first);
}

void CTags::TextExpansion::SetCandidate(char16_t const* text, std::size_t length) {
    candidate.SetLength(length + 2);
    char16_t* to = candidate.GetText();
    hasChain = false;
    *to++ = u'<';
    for (std::size_t i = 0; i < length; ++i) {
        hasChain |= text[i] == u'(';
        *to++ = detail::LowerAscii(text[i]);
    }
    *to = u'>'; // whatever delimiter it was
}

void CTags::TextExpansion::ReadTag(Token const& token, char16_t const* text, std::size_t length) {
    SetCandidate(text, length);
    std::u16string_view const marker(candidate, static_cast<std::size_t>(candidate.GetLength()));
    if (marker == Opener) {
        if (!blocks)
            blocks.emplace();
        blocks->Push(IfInfo{token.start, false});
        return Keep(token);
    }
    // Without a block that is open, the first of the two is a tag like any other.
    bool const isCloser = marker == Closer || marker == OtherCloser;
    if (isCloser && HasBlock())
        return CloseBlock(token);

    CTagInfo const* const found = hasChain ? tags.FindTag(candidate, parameters) : tags.tagsByName.Find(candidate);
    if (!found)
        return Keep(token);
    info = *found;
    if (hasChain)
        info.parameters = parameters;
    else if (!isCloser)
        cache.Enter(tags.state, text, length, found);
    Evaluate(token);
}

void CTags::TextExpansion::Evaluate(Token const& token) {
    unsigned int const generation = values.GenerationAt(token.distance);
    if (generation > limits.chain)
        exceeded = OwnTag;
    else if (generation > 0 && ++nested > limits.nested)
        exceeded = TooManyNested;
    if (exceeded)
        return;
    ++events;
    if (tags.EvaluateTag(context, info, value))
        ReplaceTag(token, generation);
    else
        Keep(token);
}

void CTags::TextExpansion::CloseBlock(Token const& token) {
    IfInfo const block = *blocks->Top();
    if (block.keep) {
        // A block stays with what is in it, so those around it stay too.
        blocks->KeepAll();
        blocks->DropTop();
        return Keep(token);
    }
    blocks->DropTop();
    if (block.start == NoStart) {
        more = false;
        return;
    }
    std::size_t const start = static_cast<std::size_t>(block.start);
    if (token.closed) {
        ++events;
        buffer.CutRest(token.read);
        buffer.CutDone(start);
        return;
    }
    // Nothing is taken out, and the block is read from its beginning. Where nothing happened since it was last read so,
    // nothing will; this marker stands at the end of the text, so it was the same block.
    if (eventsAtRewind == events)
        exceeded = NeverClosed;
    else if (ReadAgain(buffer.Length() - start)) {
        eventsAtRewind = events;
        buffer.Rewind(start);
    }
}

void CTags::TextExpansion::ReplaceTag(Token const& token, unsigned int generation) {
    CXTString<char16_t> const& valueText = value.GetText();
    if (HasBlock() && !valueText.IsEmpty())
        blocks->Top()->keep = true;
    if (token.start == NoStart) {
        more = false;
        return;
    }
    char16_t const* const text = valueText;
    std::size_t length = static_cast<unsigned int>(valueText.GetLength());
    std::size_t const plain = FindDelimiter<Stop::AtZeroToo>(text, length);
    bool const isPlain = plain == length;
    if (!isPlain)
        length = plain + xStrLen(text + plain); // an operand of a string counts up to its first zero
    std::size_t const start = static_cast<std::size_t>(token.start);
    std::size_t const taken = token.closed ? buffer.DoneLength() - start + token.read : 0;
    if (length > Room(buffer.Length() - taken, generation > 0 || !token.closed)) {
        exceeded = TooLong;
        return;
    }
    if (token.closed) {
        buffer.CutRest(token.read);
        buffer.CutDone(start);
    } else if (ReadAgain(token.read)) {
        buffer.Rewind(start); // it stays, and is met again behind its value
    } else {
        return;
    }
    if (isPlain && length > 0 && start > 0 && buffer.LastDone() != u'<') {
        // It would be read as plain text, together with what follows it up to the next delimiter.
        buffer.AppendDone(text, length);
        std::size_t const last = FindDelimiter<Stop::AtDelimiter>(buffer.Rest(), buffer.RestLength());
        more = last < buffer.RestLength();
        buffer.Advance(last + more);
        return;
    }
    std::size_t const behind = buffer.RestLength();
    buffer.Insert(text, length);
    if (xMemChr(text + plain, u'<', length - plain))
        values.Push(behind, generation + 1);
}

void CTags::ProcessText(CTagContext const& context, CXTString<char16_t>& text) {
    if (context.kind != CTagContext::KindOfText || text.GetLength() <= 0)
        return;
    CallDepth const depth;
    char const* exceeded = TooDeep;
    if (depth.Get() <= textLimits.depth) {
        TextExpansion expansion(*this, context, text);
        exceeded = expansion.Run();
        expansion.GetText(text);
    }
    if (exceeded)
        WriteToLogFile(u"A template was not expanded to its end, since it went beyond a limit: %hs.\n", exceeded);
}
