// SPDX-License-Identifier: MIT
// CXTString<T>: the one string type of the toolkit, in a narrow (char) and a wide (char16_t, UTF-16) form.
//
//     CXTString<char16_t> name(u"Wood");
//     name += u".JPG";                       // "Wood.JPG"
//     name.MakeLower();                      // "wood.jpg"
//     name.Find(u".jpg");                    // 4
//     name.Format(u"%s (%d)", u"oak", 2);    // "oak (2)"
//
// Lengths and positions count units of T and are 32-bit signed; -1 means not found. Some operations differ from what
// their names suggest elsewhere; the note at each of them is a promise: SpanIncluding and SpanExcluding filter,
// FindOneOf follows the order of its set, a text search does not look back, MakeReverse moves the terminator.
//
// Case and class of a character follow the process's C locale (foundation/characters.h). Narrow text is in the
// system's narrow code page wherever it is converted.

#pragma once

#include "zeltools/foundation/api.h"
#include "zeltools/foundation/xchar_array.h"

#include <cassert>
#include <cstdarg>
#include <cstddef>

/// How the bytes of a narrow text, or the units of a wide one, are to be read. Any other number is a code page.
enum xStringEncoding : int {
    xEncodingDefault = -1, ///< The system's narrow code page.
    xEncodingAnsi = 1,     ///< The system's narrow code page.
    xEncodingUtf8 = 2,     ///< UTF-8.
    xEncodingUtf16 = 3     ///< 16-bit units.
};

/// A string of characters T, copied deeply and never shared.
///
/// The text lies in one buffer of the C library's allocator with a zero behind it (CXTCharArray has the layout and the
/// growth rule), and a pointer into it holds until the next change. There are no move operations: a string that is
/// given away is copied. The string never throws; a position outside the text gives the result stated at the operation.
/// A negative index given to an element access is an assertion in debug builds and counts as beyond the end in release.
///
/// Embedded zeros can be put in through GetBuffer, SetAt and a construction with a count. Comparison, appending and
/// the text operand of any operation end at the first zero.
///
/// Threads: two threads may use two strings freely; one string belongs to one thread at a time.
template <class T>
class ZEL_API CXTString : public CXTCharArray<T> {
    using Base = CXTCharArray<T>;
    using Base::buffer;
    using Base::capacity;
    using Base::length;

public:
    using Other = typename Base::Other;

    // ---- Making one ----

    CXTString() noexcept = default;
    CXTString(CXTString const& other) = default;
    CXTString(std::nullptr_t) noexcept {}

    /// Copies a text up to its zero; null gives the empty string.
    CXTString(T const* text) : Base(text, -1) {}

    /// Copies `count` characters, which must be readable; -1 measures the text. Null gives the empty string.
    CXTString(T const* text, int count) : Base(text, count) {}

    /// `count` times the same character; a count below 1 gives the empty string.
    CXTString(T character, int count);

    /// Converts a text of the other width on the system's narrow code page; null or a failure gives the empty string.
    CXTString(Other const* text);

    // ---- Assigning; a null pointer empties the string ----

    CXTString& operator=(CXTString const& other) = default;
    CXTString& operator=(T const* text);
    CXTString& operator=(T character);
    /// The bytes are taken as char: assigned as they are to a narrow string, converted for a wide one.
    CXTString& operator=(unsigned char const* text);
    /// Converts as the constructor does.
    CXTString& operator=(Other const* text);
    CXTString& operator=(std::nullptr_t);

    /// Takes `count` characters of `text`; a null text or a count below 1 gives the empty string.
    CXTString& Copy(T const* text, int count);

    // ---- Asking and reaching the characters ----

    bool IsEmpty() const noexcept { return length == 0; }

    operator T const*() const noexcept { return buffer; }

    /// The character at `index`, unchecked in a release build; the length itself gives the terminator.
    T operator[](int index) const {
        assert(index >= 0 && static_cast<std::size_t>(index) <= length);
        return buffer[index];
    }

    /// The character at `index`, or 0 from the length on.
    T GetAt(int index) const {
        assert(index >= 0);
        return IsInside(index) ? buffer[index] : T();
    }

    /// The address of the character at `index`, or null from the length on.
    T* GetAtPtr(int index) {
        assert(index >= 0);
        return IsInside(index) ? buffer + index : nullptr;
    }
    T const* GetAtPtr(int index) const {
        assert(index >= 0);
        return IsInside(index) ? buffer + index : nullptr;
    }

    /// Writes one character; does nothing from the length on.
    void SetAt(int index, T character) {
        assert(index >= 0);
        if (IsInside(index))
            buffer[index] = character;
    }

    /// Gives the buffer for writing, with the length raised to `minimum` where it was less.
    ///
    /// The length really changes: GetBuffer(5) on "abc" makes five characters of it, the last two undefined.
    /// Write up to the length, and call ReleaseBuffer.
    T* GetBuffer(int minimum = 0);
    /// Like GetBuffer, for reading.
    T const* GetConstBuffer(int minimum);
    T const* GetConstBuffer() const noexcept { return buffer; }

    /// Gives the buffer for writing with exactly `newLength` characters; a negative length counts as 0.
    T* GetBufferSetLength(int newLength);

    /// Sets the length after the buffer was written; with -1 the text is measured up to its zero.
    ///
    /// A number above the present length is taken as a sign of an overrun: the length becomes one less than it was
    /// (and stays 0 for an empty string).
    void ReleaseBuffer(int newLength = -1);

    /// Takes the buffer away. The caller gives it to std::free, unless the string never held anything: then it is the
    /// shared empty buffer (IsEmptyBuffer). The string is good only for destruction afterwards.
    [[nodiscard]] T* DetachBuffer() noexcept;

    /// Whether a detached buffer is the shared empty one, which must not be freed.
    static bool IsEmptyBuffer(T const* detached) noexcept { return detached == Base::EmptyBuffer(); }

    /// Makes the text empty and keeps the memory.
    void Empty();

    /// xEncodingAnsi for narrow strings, xEncodingUtf16 for wide ones.
    static constexpr xStringEncoding GetDefaultEncoding() noexcept {
        return sizeof(T) == 1 ? xEncodingAnsi : xEncodingUtf16;
    }

    // ---- Appending; a null pointer leaves the text, an operand counts up to its first zero ----

    CXTString& operator+=(CXTString const& other) {
        Base::AppendText(other);
        return *this;
    }
    CXTString& operator+=(T const* text);
    CXTString& operator+=(T character) {
        std::size_t const end = length;
        if (end + 1 < capacity) {
            length = end + 1;
            buffer[length] = T();
        } else {
            Base::SetLength(end + 1);
        }
        buffer[end] = character;
        return *this;
    }
    CXTString& operator+=(Other const* text);
    CXTString& operator+=(std::nullptr_t) noexcept { return *this; }

    friend CXTString operator+(CXTString const& left, CXTString const& right) {
        return Join(left.buffer, left.length, right.buffer, Measure(right.buffer));
    }
    friend CXTString operator+(CXTString const& left, T const* right) {
        return Join(left.buffer, left.length, right, Measure(right));
    }
    friend CXTString operator+(T const* left, CXTString const& right) {
        return Join(left, Measure(left), right.buffer, Measure(right.buffer));
    }
    friend CXTString operator+(CXTString const& left, T right) { return Join(left.buffer, left.length, &right, 1); }
    friend CXTString operator+(T left, CXTString const& right) {
        return Join(&left, 1, right.buffer, Measure(right.buffer));
    }

    // ---- Comparing: negative, 0 or positive, character by character, unsigned, up to the first zero ----
    // A null operand counts as the empty text: 1 for a string that is not empty, else 0.

    int Compare(T const* other) const;
    /// Compares characters lowered as by MakeLower, so that `_` comes before the letters.
    int CompareNoCase(T const* other) const;
    /// Compares in the order of the process's locale.
    int Collate(T const* other) const;
    int CollateNoCase(T const* other) const;

    bool operator==(CXTString const& other) const { return Compare(other.buffer) == 0; }
    bool operator==(T const* other) const { return Compare(other) == 0; }

    friend bool operator<(CXTString const& left, CXTString const& right) { return left.Compare(right.buffer) < 0; }
    friend bool operator<(CXTString const& left, T const* right) { return left.Compare(right) < 0; }
    friend bool operator<=(CXTString const& left, CXTString const& right) { return left.Compare(right.buffer) <= 0; }
    friend bool operator<=(CXTString const& left, T const* right) { return left.Compare(right) <= 0; }
    friend bool operator>(CXTString const& left, CXTString const& right) { return left.Compare(right.buffer) > 0; }
    friend bool operator>(CXTString const& left, T const* right) { return left.Compare(right) > 0; }
    friend bool operator>=(CXTString const& left, CXTString const& right) { return left.Compare(right.buffer) >= 0; }
    friend bool operator>=(CXTString const& left, T const* right) { return left.Compare(right) >= 0; }

    // ---- Searching: a position, or -1 ----
    // -1 too for a null or empty text, for a start that is negative or not below the length, and for a place beyond
    // what an int holds.

    int Find(T character, int start = 0) const;
    /// Compares lower-cased characters.
    int FindNoCase(T character, int start = 0) const;

    /// The first position of `text` at or behind `start`.
    ///
    /// The scan looks for the first character of `text` and compares on. Where a later character differs it goes on
    /// from that place and does not look back, so a match that overlaps a failed attempt is missed: "abac" is not
    /// found in "ababac". Remove, Replace and CExLCString::Find search alike.
    int Find(T const* text, int start = 0, bool noCase = false) const;

    /// Like Find, but gives the position behind the match.
    int FindEndPos(T const* text, int start = 0, bool noCase = false) const;

    /// The position of the first character of `set` that occurs at all.
    ///
    /// The order of the set decides, not the order of the string: "cb" in "abc" gives 2.
    int FindOneOf(T const* set) const;

    /// The last position of `character` at or before `start`; -1 or a start beyond the end means the last character.
    int ReverseFind(T character, int start = -1) const;

    /// The position of the last match of `text` that ends at or before `start`.
    ///
    /// Matches from the last character of `text` backwards, and after a partial match goes on from the place that
    /// differed, as Find does in the other direction.
    int ReverseFind(T const* text, int start = -1) const;

    // ---- Cutting: each gives a new string ----

    /// The first `count` characters; empty for a negative count, all for a large one.
    CXTString Left(int count) const;
    /// The last `count` characters; empty for a negative count, all for a large one.
    CXTString Right(int count) const;
    /// `count` characters from `first` on; a negative `first` counts as 0, -1 or an overrun goes to the end.
    CXTString Mid(int first, int count = -1) const;

    /// All characters that occur in `set`, in order, wherever they stand: "ab" of "xaybz" gives "ab".
    /// A null or empty set gives the empty string.
    CXTString SpanIncluding(T const* set) const;
    /// All characters that do not occur in `set`: "ab" of "xaybz" gives "xyz".
    /// A null set gives the empty string, an empty one the whole text.
    CXTString SpanExcluding(T const* set) const;

    /// The next token from `position` on, which moves behind the delimiter that ended it.
    ///
    /// @param position  Becomes -1 with the last token already, and when there is none.
    ///
    /// ",a,,b" by ",": "a" and position 3, then "b" and -1. Empty tokens are never returned. A null or empty set of
    /// delimiters, or a position outside the text, gives the empty string and -1.
    CXTString Tokenize(T const* delimiters, int& position) const;

    // ---- Changing ----

    /// Puts a character or a text before `position`; nothing for a position outside 0 to the length.
    /// @return the length afterwards.
    int Insert(int position, T character);
    int Insert(int position, CXTString const& text);

    /// Takes out `count` characters; nothing for a position outside the text or a count below 1.
    /// @return the length afterwards.
    int Delete(int position, int count = 1);

    /// Takes out `character`, `maxCount` times at most; -1: all.
    /// @return the number of removals.
    int Remove(T character, int maxCount = -1);
    /// Takes out `text`, found as Find does; the search goes on at the place of the removal.
    int Remove(T const* text, bool noCase = false, int maxCount = -1);

    /// Replaces single characters.
    ///
    /// The counter runs from `startPosition` up to `endPosition` and the length, while the characters are taken from
    /// the head of the string on: with a start of 2, "aaaa" changes its first two characters. A caller that wants the
    /// plain meaning leaves the start at 0.
    ///
    /// @param maxCount     -1: all; 0 replaces nothing.
    /// @param endPosition  -1: the end; 0 replaces nothing.
    /// @return the number of replacements.
    int Replace(T from, T to, int maxCount = -1, int endPosition = -1, int startPosition = 0);

    /// Replaces texts, found as Find does; the search goes on behind the inserted text.
    ///
    /// @param maxCount     -1: all; 0 replaces nothing.
    /// @param endPosition  A match that starts here or later ends the work; -1: none does. It counts positions of the
    ///                     text as it changes.
    /// @return the number of replacements; 0 if `from` or `to` is null or `from` is empty.
    int Replace(T const* from, T const* to, int maxCount = -1, int endPosition = -1, int startPosition = 0);

    /// Changes the case of the first `count` characters, one by one; -1: all.
    CXTString& MakeLower(int count = -1);
    CXTString& MakeUpper(int count = -1);

    /// Swaps position i with position length - i, the terminator's included.
    ///
    /// So the zero comes to the front and the first character stands where the zero was: not a reversal in the
    /// ordinary sense, and the buffer is no terminated text afterwards.
    CXTString& MakeReverse();

    /// Strips white space, or a character, or any character of a set, at both ends or at one. A null set strips
    /// nothing.
    CXTString& Trim();
    CXTString& Trim(T character);
    CXTString& Trim(T const* set);
    CXTString& TrimLeft();
    CXTString& TrimLeft(T character);
    CXTString& TrimLeft(T const* set);
    CXTString& TrimRight();
    CXTString& TrimRight(T character);
    CXTString& TrimRight(T const* set);

    // ---- Formatting and scanning, in the conventions of foundation/text_format.h ----
    // In a wide format %s is wide text and %S or %hs narrow; in a narrow format the reverse. An argument may be the
    // string's own buffer. A format that cannot be carried out gives the empty string, a null one changes nothing.
    // What AppendFormat appends counts up to its first zero, as any operand does.

    void Format(T const* format, ...);
    /// The format is a row of the string table; an id without text changes nothing.
    void Format(unsigned int id, ...);
    void FormatV(T const* format, std::va_list arguments);
    void AppendFormat(T const* format, ...);
    void AppendFormat(unsigned int id, ...);

    /// Reads values from the text, from `start` on if given; each text target is followed by its size in characters.
    /// @return the number of values stored; 0 for a null format, an empty text and a start outside the text; -1 for a
    ///         text that ends before the first value.
    int ScanS(T const* format, ...) const;
    int ScanS(int start, T const* format, ...) const;
    int ScanVS(T const* format, std::va_list arguments) const;
    int ScanVS(int start, T const* format, std::va_list arguments) const;

    /// Assigns the text of row `id` of the string table, in the calling thread's language.
    /// @return whether the row has a text; the string is empty otherwise.
    bool LoadStringW(unsigned int id);

private:
    bool IsInside(int index) const noexcept { return static_cast<unsigned int>(index) < length; }

    static std::size_t Measure(T const* text) noexcept;
    static CXTString Join(T const* left, std::size_t leftLength, T const* right, std::size_t rightLength);
    void AssignOther(Other const* text);
    int InsertAt(int position, T const* text, std::size_t count);
    template <class IsStripped>
    CXTString& Strip(IsStripped isStripped, bool left, bool right);
};

extern template class CXTString<char>;
extern template class CXTString<char16_t>;
