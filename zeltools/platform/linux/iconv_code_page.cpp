// SPDX-License-Identifier: MIT
#include "zeltools/platform/linux/iconv_code_page.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <iconv.h>
#include <iterator>
#include <memory>
#include <mutex>
#include <vector>

namespace platform {

namespace {

constexpr char16_t replacement = 0xFFFD;

enum class PageKind {
    SingleByte, ///< A table of 256.
    DoubleByte, ///< A lead byte from 0x81 on takes the next byte with it, valid or not.
    Other,      ///< Up to four bytes.
};

struct Page {
    unsigned number;
    char const* iconvName;
    PageKind kind;
};

// Numbers of the original platform; sorted. UTF-7 is left out: its many spellings of one text hide things from checks.
constexpr Page pages[] = {
    {437, "CP437", PageKind::SingleByte},         {737, "CP737", PageKind::SingleByte},
    {775, "CP775", PageKind::SingleByte},         {850, "CP850", PageKind::SingleByte},
    {852, "CP852", PageKind::SingleByte},         {855, "CP855", PageKind::SingleByte},
    {857, "CP857", PageKind::SingleByte},         {858, "CP858", PageKind::SingleByte},
    {860, "CP860", PageKind::SingleByte},         {861, "CP861", PageKind::SingleByte},
    {862, "CP862", PageKind::SingleByte},         {863, "CP863", PageKind::SingleByte},
    {864, "CP864", PageKind::SingleByte},         {865, "CP865", PageKind::SingleByte},
    {866, "CP866", PageKind::SingleByte},         {869, "CP869", PageKind::SingleByte},
    {874, "CP874", PageKind::SingleByte},         {932, "CP932", PageKind::DoubleByte},
    {936, "CP936", PageKind::DoubleByte},         {949, "CP949", PageKind::DoubleByte},
    {950, "CP950", PageKind::DoubleByte},         {1250, "CP1250", PageKind::SingleByte},
    {1251, "CP1251", PageKind::SingleByte},       {1252, "CP1252", PageKind::SingleByte},
    {1253, "CP1253", PageKind::SingleByte},       {1254, "CP1254", PageKind::SingleByte},
    {1255, "CP1255", PageKind::SingleByte},       {1256, "CP1256", PageKind::SingleByte},
    {1257, "CP1257", PageKind::SingleByte},       {1258, "CP1258", PageKind::SingleByte},
    {1361, "CP1361", PageKind::DoubleByte},       {10000, "MACINTOSH", PageKind::SingleByte},
    {20127, "US-ASCII", PageKind::SingleByte},    {20866, "KOI8-R", PageKind::SingleByte},
    {20932, "EUC-JP", PageKind::Other},           {21866, "KOI8-U", PageKind::SingleByte},
    {28591, "ISO-8859-1", PageKind::SingleByte},  {28592, "ISO-8859-2", PageKind::SingleByte},
    {28593, "ISO-8859-3", PageKind::SingleByte},  {28594, "ISO-8859-4", PageKind::SingleByte},
    {28595, "ISO-8859-5", PageKind::SingleByte},  {28596, "ISO-8859-6", PageKind::SingleByte},
    {28597, "ISO-8859-7", PageKind::SingleByte},  {28598, "ISO-8859-8", PageKind::SingleByte},
    {28599, "ISO-8859-9", PageKind::SingleByte},  {28603, "ISO-8859-13", PageKind::SingleByte},
    {28605, "ISO-8859-15", PageKind::SingleByte}, {51932, "EUC-JP", PageKind::Other},
    {51949, "EUC-KR", PageKind::Other},           {54936, "GB18030", PageKind::Other},

};

std::size_t IndexOf(unsigned codePage) {
    auto const* const page = std::lower_bound(std::begin(pages), std::end(pages), codePage,
                                              [](Page const& p, unsigned number) { return p.number < number; });
    bool const found = page != std::end(pages) && page->number == codePage;
    return static_cast<std::size_t>((found ? page : std::end(pages)) - std::begin(pages));
}

// --- Descriptors ----------------------------------------------------------------------------------------------------

class Descriptor {
public:
    Descriptor(char const* to, char const* from) : m_handle(iconv_open(to, from)) {}
    Descriptor(Descriptor const&) = delete;
    Descriptor& operator=(Descriptor const&) = delete;
    ~Descriptor() {
        if (IsOpen())
            iconv_close(m_handle);
    }

    [[nodiscard]] bool IsOpen() const { return m_handle != reinterpret_cast<iconv_t>(-1); }

    void Reset() { iconv(m_handle, nullptr, nullptr, nullptr, nullptr); }

    // 0 when all was converted, else errno. A null source flushes what the converter holds back.
    int Convert(char const** source, std::size_t* sourceLeft, char** target, std::size_t* targetLeft) {
        std::size_t const result = iconv(m_handle, const_cast<char**>(source), sourceLeft, target, targetLeft);
        return result == static_cast<std::size_t>(-1) ? errno : 0;
    }

private:
    iconv_t m_handle;
};

// A descriptor carries a conversion's state, so no two threads may share one; opening one costs far more than using
// it, so each thread keeps those that it has used.
Descriptor& DescriptorOf(std::size_t index, bool decode) {
    thread_local std::array<std::unique_ptr<Descriptor>, std::size(pages) * 2> cache;
    std::unique_ptr<Descriptor>& slot = cache[index * 2 + (decode ? 1 : 0)];
    char const* const name = pages[index].iconvName;
    if (!slot || !slot->IsOpen())
        slot = decode ? std::make_unique<Descriptor>("UTF-16LE", name) : std::make_unique<Descriptor>(name, "UTF-16LE");
    return *slot;
}

// --- Pages of single bytes ------------------------------------------------------------------------------------------

struct SingleByteTable {
    std::array<char16_t, 256> units;
    std::vector<unsigned char> bytes; ///< By unit; 0 is "none" but for unit 0.
};

// The pages of 125x have bytes that stand for no character. The original platform lets those of the C1 range through.
bool PassesC1(unsigned codePage) {
    return (codePage >= 1250 && codePage <= 1258) || codePage == 874;
}

SingleByteTable const* MakeTable(std::size_t index) {
    auto table = std::make_unique<SingleByteTable>();
    table->bytes.resize(0x10000);
    Descriptor& toUnits = DescriptorOf(index, true);
    for (unsigned byte = 0; byte < 256; ++byte) {
        auto const narrow = static_cast<char>(byte);
        std::array<char16_t, 4> units{};
        char const* source = &narrow;
        auto* target = reinterpret_cast<char*>(units.data());
        std::size_t sourceLeft = 1;
        std::size_t targetLeft = sizeof units;
        toUnits.Reset();
        bool mapped = toUnits.Convert(&source, &sourceLeft, &target, &targetLeft) == 0;
        // Pages with combining marks hold a letter back until they have seen the next one.
        mapped = mapped && toUnits.Convert(nullptr, nullptr, &target, &targetLeft) == 0;
        mapped = mapped && targetLeft == sizeof units - sizeof(char16_t);
        if (!mapped && byte >= 0x80 && byte < 0xA0 && PassesC1(pages[index].number)) {
            units[0] = static_cast<char16_t>(byte);
            mapped = true;
        }
        table->units[byte] = mapped ? units[0] : replacement;
        if (mapped && table->bytes[units[0]] == 0)
            table->bytes[units[0]] = static_cast<unsigned char>(byte);
    }
    return table.release();
}

// Made once and kept until the process ends: a thread may still convert while static objects are destroyed.
SingleByteTable const& TableOf(std::size_t index) {
    static std::array<std::once_flag, std::size(pages)> made;
    static std::array<SingleByteTable const*, std::size(pages)> tables{};
    std::call_once(made[index], [index] { tables[index] = MakeTable(index); });
    return *tables[index];
}

TextConversion DecodeTable(SingleByteTable const& table, char const* source, std::size_t length, char16_t* target,
                           std::size_t room) {
    TextConversion done{target ? std::min(length, room) : length, !target || length <= room, false};
    for (std::size_t i = 0; i < done.length; ++i) {
        char16_t const unit = table.units[static_cast<unsigned char>(source[i])];
        done.invalid = done.invalid || unit == replacement;
        if (target)
            target[i] = unit;
    }
    return done;
}

TextConversion EncodeTable(SingleByteTable const& table, char16_t const* source, std::size_t length, char* target,
                           std::size_t room) {
    TextConversion done{target ? std::min(length, room) : length, !target || length <= room, false};
    for (std::size_t i = 0; i < done.length; ++i) {
        unsigned char const byte = table.bytes[source[i]];
        bool const lacking = byte == 0 && source[i] != 0;
        done.invalid = done.invalid || lacking;
        if (target)
            target[i] = lacking ? '?' : static_cast<char>(byte);
    }
    return done;
}

// --- The others -----------------------------------------------------------------------------------------------------

// Where a converter writes: a scratch buffer, which is emptied into the target, or only counted where there is none.
// Written straight into a target that is just large enough, some converters claim that it is full: they look for the
// room of a longer character before they know which one they have.
template <typename Unit>
class Output {
public:
    Output(Unit* target, std::size_t room) : m_target(target), m_room(room) {}

    // Runs the converter until it has taken the whole source or stops at something that it cannot convert: 0, EILSEQ
    // or EINVAL as iconv. E2BIG: the target is full. A null source flushes what the converter holds back.
    int Convert(Descriptor& descriptor, char const** source, std::size_t* sourceLeft) {
        for (;;) {
            auto* bytes = reinterpret_cast<char*>(m_scratch + m_filled);
            std::size_t bytesLeft = (scratchSize - m_filled) * sizeof(Unit);
            int const error = descriptor.Convert(source, sourceLeft, &bytes, &bytesLeft);
            m_filled = scratchSize - bytesLeft / sizeof(Unit);
            if (error != E2BIG)
                return error;
            if (m_filled == 0 || !Empty())
                return E2BIG;
        }
    }

    // False when the target is full.
    bool Put(Unit unit) {
        if (m_filled == scratchSize && !Empty())
            return false;
        m_scratch[m_filled++] = unit;
        return true;
    }

    // Hands the scratch buffer over; false when the target is full.
    bool Empty() {
        std::size_t const fitting = m_target ? std::min(m_filled, m_room - m_length) : m_filled;
        bool const fitted = fitting == m_filled;
        if (m_target)
            std::copy_n(m_scratch, fitting, m_target + m_length);
        m_length += fitting;
        m_filled = 0;
        return fitted;
    }

    [[nodiscard]] std::size_t Length() const { return m_length; }

private:
    static constexpr std::size_t scratchSize = 512;
    Unit* m_target;
    std::size_t m_room;
    std::size_t m_length = 0;
    std::size_t m_filled = 0;
    Unit m_scratch[scratchSize];
};

// Single bytes of the Japanese page that iconv's has no character for.
constexpr struct {
    unsigned char byte;
    char16_t unit;
} japaneseExtras[] = {{0x80, 0x0080}, {0xA0, 0xF8F0}, {0xFD, 0xF8F1}, {0xFE, 0xF8F2}, {0xFF, 0xF8F3}};

bool IsLeadByte(Page const& page, unsigned char byte) {
    if (page.kind != PageKind::DoubleByte || byte < 0x81 || byte == 0xFF)
        return false;
    return page.number != 932 || byte <= 0x9F || (byte >= 0xE0 && byte <= 0xFC);
}

} // namespace

bool IsIconvCodePage(unsigned codePage) {
    std::size_t const index = IndexOf(codePage);
    return index < std::size(pages) && DescriptorOf(index, true).IsOpen() && DescriptorOf(index, false).IsOpen();
}

TextConversion DecodeIconv(unsigned codePage, char const* source, std::size_t length, char16_t* target,
                           std::size_t room) {
    std::size_t const index = IndexOf(codePage);
    Page const& page = pages[index];
    if (page.kind == PageKind::SingleByte)
        return DecodeTable(TableOf(index), source, length, target, room);

    Descriptor& descriptor = DescriptorOf(index, true);
    descriptor.Reset();
    Output<char16_t> output(target, room);
    bool invalid = false;
    for (;;) {
        int const error = output.Convert(descriptor, &source, &length);
        if (error == 0)
            break;
        if (error == E2BIG || length == 0)
            return {output.Length(), false, invalid};
        auto const byte = static_cast<unsigned char>(*source);
        char16_t unit = replacement;
        std::size_t taken = error == EINVAL ? length : 1; // EINVAL: the text ends inside a character
        if (error == EILSEQ) {
            auto const* const extra = std::find_if(std::begin(japaneseExtras), std::end(japaneseExtras),
                                                   [byte](auto const& e) { return e.byte == byte; });
            if (page.number == 932 && extra != std::end(japaneseExtras))
                unit = extra->unit;
            else if (IsLeadByte(page, byte) && length >= 2 && source[1] != 0)
                taken = 2;
        }
        invalid = invalid || unit == replacement;
        if (!output.Put(unit))
            return {output.Length(), false, invalid};
        source += taken;
        length -= taken;
    }
    bool const flushed = output.Convert(descriptor, nullptr, nullptr) != E2BIG && output.Empty();
    return {output.Length(), flushed, invalid};
}

TextConversion EncodeIconv(unsigned codePage, char16_t const* source, std::size_t length, char* target,
                           std::size_t room) {
    std::size_t const index = IndexOf(codePage);
    Page const& page = pages[index];
    if (page.kind == PageKind::SingleByte)
        return EncodeTable(TableOf(index), source, length, target, room);

    Descriptor& descriptor = DescriptorOf(index, false);
    descriptor.Reset();
    Output<char> output(target, room);
    bool invalid = false;
    auto const* bytes = reinterpret_cast<char const*>(source);
    std::size_t bytesLeft = length * sizeof(char16_t);
    for (;;) {
        int const error = output.Convert(descriptor, &bytes, &bytesLeft);
        if (error == 0)
            break;
        if (error == E2BIG || bytesLeft < sizeof(char16_t))
            return {output.Length(), false, invalid};
        char16_t const unit = *reinterpret_cast<char16_t const*>(bytes);
        auto const* const extra = std::find_if(std::begin(japaneseExtras), std::end(japaneseExtras),
                                               [unit](auto const& e) { return e.unit == unit; });
        if (page.number == 932 && extra != std::end(japaneseExtras)) {
            if (!output.Put(static_cast<char>(extra->byte)))
                return {output.Length(), false, invalid};
        } else {
            // The question mark goes through the converter too: a page with shifts may need to leave its state.
            char16_t const questionMark = u'?';
            auto const* mark = reinterpret_cast<char const*>(&questionMark);
            std::size_t markLeft = sizeof questionMark;
            invalid = true;
            if (output.Convert(descriptor, &mark, &markLeft) == E2BIG)
                return {output.Length(), false, invalid};
        }
        // A pair is refused at its first half and then at its second, which gives the two marks.
        bytes += sizeof(char16_t);
        bytesLeft -= sizeof(char16_t);
    }
    bool const flushed = output.Convert(descriptor, nullptr, nullptr) != E2BIG && output.Empty();
    return {output.Length(), flushed, invalid};
}

} // namespace platform
