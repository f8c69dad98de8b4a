// SPDX-License-Identifier: MIT
// The binary object stream: scalars, counts, strings and graphs of objects, written to a file or read from one.
//
//     CXArchive archive(&file, CXArchive::Storing);
//     archive << 7 << CXTString<char16_t>(u"oak") << shape;     // an int, a text, an object with all it points to
//     archive.Close();                                           // tells, by exception, when the disk was full
//
//     CXArchive archive(&file, CXArchive::Loading);
//     archive >> number >> name;
//     shape = static_cast<CShape*>(archive.ReadObject(CShape::GetThisRuntimeClassDescriptor()));
//
// Scalars lie in the stream as they are, little-endian and without tags, so reader and writer must name the same types
// in the same order. An object that is met again is stored as a reference, so shared objects stay shared and cycles
// come back as cycles. docs/formats/archive.md has the bytes.

#pragma once

#include "zeltools/foundation/api.h"
#include "zeltools/foundation/hash_map.h"
#include "zeltools/foundation/xarchive_exception.h"
#include "zeltools/foundation/xarray.h"
#include "zeltools/foundation/xobject.h"
#include "zeltools/foundation/xstring.h"

#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <memory>

class CXFile;

namespace detail {

/// What was stored, a class or an object, by its address.
struct StoredAddress {
    void const* pointer = nullptr;
};

} // namespace detail

/// Objects are mostly stored in the order in which they were made, so neighbours in memory stay neighbours in the
/// table: a mixed hash would miss the cache with each of a million objects. A table's size is a prime, so regular
/// distances between addresses collide no more than chance. Blocks of 32 bytes are the least that an allocator gives
/// out.
template <>
struct CHashMethods<detail::StoredAddress> {
    static unsigned int Hash(detail::StoredAddress key) {
        return static_cast<unsigned int>(reinterpret_cast<std::uintptr_t>(key.pointer) / 32);
    }
    static bool IsEqual(detail::StoredAddress a, detail::StoredAddress b) { return a.pointer == b.pointer; }
    static constexpr bool LooksAtKeysOnly = true;
};

/// A stream of one direction over one file, which stays the host's and must outlive the archive, or its Close.
///
/// The archive buffers, so the file's own position runs ahead of it while loading and behind it while storing, until
/// Flush. A file that lends its memory (CXMemFile) is read and written in place, with no buffer between.
///
/// Who owns loaded objects: ReadObject gives a new object to its caller, and hands out the same pointer for each
/// further reference. When an object's own Serialize fails, ReadObject deletes that object and passes the exception
/// on. Objects that were read completely before stay with whoever took them: an object that reads its parts into
/// members releases them in its destructor, and so a failed load leaves nothing behind.
///
/// Hostile streams: no length or count of the stream is believed before its bytes are there, and objects nest only as
/// deep as SetMaxDepth allows.
///
/// Threads: one at a time.
/// Errors:  CXArchiveException with a cause and the file's path; what the file throws; CXInvalidArgException for
/// misuse,
///          a read or write after Close included; CXMemoryException.
class ZEL_API CXArchive {
public:
    /// Bits of the mode.
    enum Mode : unsigned int {
        Storing = 0,
        Loading = 1,
        NoFlushOnDelete = 2, ///< The destructor leaves the file as it is.
    };

    /// The buffer of an archive that is not told any size, in bytes.
    static constexpr unsigned int DefaultBufferSize = 4096;

    /// A smaller buffer is not used; a scalar and its shortfall always fit into this.
    static constexpr unsigned int MinimalBufferSize = 128;

    /// How deep objects may nest before it is an error: each level takes the stack of one Serialize, and this many
    /// levels of generous ones fit into half a megabyte.
    static constexpr unsigned int DefaultMaxDepth = 1000;

    /// The encoding of bytes that only a narrow string reads, as they are; a wide string leaves them in the stream.
    static constexpr xStringEncoding OpaqueEncoding = static_cast<xStringEncoding>(4);

    // ---- Beginning ----

    /// Opens the stream at the file's position.
    /// @param mode        Bits of Mode.
    /// @param bufferSize  Bytes; below MinimalBufferSize, `buffer` is ignored and that size is taken.
    /// @param buffer      Memory of the caller's to buffer in, which outlives the archive. Null: the file's own memory,
    ///                    or else a buffer of the archive's.
    /// Errors:  CXInvalidArgException for a null file.
    CXArchive(CXFile* file, unsigned int mode, unsigned int bufferSize = DefaultBufferSize, void* buffer = nullptr);

    /// Flushes, unless the mode says not to or the file was closed. A failure of that flush can tell nobody and is
    /// lost: a writer that wants to know calls Close first.
    virtual ~CXArchive();

    CXArchive(CXArchive const&) = delete;
    CXArchive& operator=(CXArchive const&) = delete;

    // ---- Asking ----

    bool IsLoading() const { return (mode & Loading) != 0; }
    bool IsStoring() const { return !IsLoading(); }

    /// The file; null after Close or Abort.
    CXFile* GetFile() const { return file; }

    /// The stored schema of the object that is being read; all ones for none. Asking does not change it, and it stays
    /// after the object's Serialize.
    unsigned int GetObjectSchema() const { return schema; }

    /// A pointer for code that serialises to carry its context in; the archive does nothing with it.
    void* GetData() const { return userData; }
    void SetData(void* data) { userData = data; }

    /// How many objects may stand one inside the other, in both directions. More raise genericException.
    unsigned int GetMaxDepth() const { return maxDepth; }

    /// Allows another depth, for graphs with long chains; the stack must be large enough for them.
    void SetMaxDepth(unsigned int levels) { maxDepth = levels; }

    // ---- Ending ----

    /// Flushes and lets go of the file. A second call does nothing.
    void Close();

    /// Lets go of the file without a flush: what is still buffered is lost.
    void Abort();

    /// Storing: writes what is buffered to the file. Loading: gives back what was read ahead, so that the file stands
    /// behind the last byte consumed.
    /// @param final  True when nothing more will be written: no new memory is asked of a file that lends its own.
    void Flush(bool final = false);

    // ---- Bytes ----

    /// Reads up to `count` bytes. What exceeds the buffer goes straight from the file.
    /// @return the bytes delivered: fewer only at the file's end, and 0 for null.
    unsigned long long Read(void* data, unsigned long long count);

    /// Reads `count` bytes.
    /// Errors:  endOfFile when there are fewer; those that there were are then read.
    void EnsureRead(void* data, unsigned long long count);

    /// Writes bytes; nothing for null. What exceeds the buffer goes straight to the file.
    void Write(void const* data, unsigned long long count);

    /// An upper bound of the bytes that a loading archive can still deliver: what its buffer holds and what its file
    /// has left; all ones where the file cannot tell. A Serialize that reads a count asks before it allocates by it. It
    /// costs two calls of the system.
    unsigned long long BytesLeft() const;

    /// Raises endOfFile, as reading them would in the end, where so many bytes cannot be left.
    /// @return whether it is sure of that, so that memory for so many may be taken; else let it grow as they come.
    bool RequireBytes(unsigned long long count) const;

    // ---- Scalars ----
    // Signed and unsigned of one width are the same bytes.

    CXArchive& operator<<(char value) { return Store(value); }
    CXArchive& operator<<(unsigned char value) { return Store(value); }
    CXArchive& operator<<(bool value) { return *this << static_cast<char>(value); }
    CXArchive& operator<<(short value) { return Store(value); }
    CXArchive& operator<<(unsigned short value) { return Store(value); }
    CXArchive& operator<<(char16_t value) { return Store(value); }
    CXArchive& operator<<(int value) { return Store(value); }
    CXArchive& operator<<(unsigned int value) { return Store(value); }
    CXArchive& operator<<(float value) { return Store(value); }
    CXArchive& operator<<(long long value) { return Store(value); }
    CXArchive& operator<<(unsigned long long value) { return Store(value); }
    CXArchive& operator<<(double value) { return Store(value); }

    // These would turn into a bool or an int without a word.
    CXArchive& operator<<(void const*) = delete;
    CXArchive& operator<<(signed char) = delete;
    CXArchive& operator<<(wchar_t) = delete;

    CXArchive& operator>>(char& value) { return Load(value); }
    CXArchive& operator>>(unsigned char& value) { return Load(value); }

    /// Passes over the byte and leaves the variable as it was. A flag is read as a char or unsigned char.
    CXArchive& operator>>(bool&) {
        char passedOver;
        return *this >> passedOver;
    }

    CXArchive& operator>>(short& value) { return Load(value); }
    CXArchive& operator>>(unsigned short& value) { return Load(value); }
    CXArchive& operator>>(char16_t& value) { return Load(value); }
    CXArchive& operator>>(int& value) { return Load(value); }
    CXArchive& operator>>(unsigned int& value) { return Load(value); }
    CXArchive& operator>>(float& value) { return Load(value); }
    CXArchive& operator>>(long long& value) { return Load(value); }
    CXArchive& operator>>(unsigned long long& value) { return Load(value); }
    CXArchive& operator>>(double& value) { return Load(value); }

    // ---- Counts and strings ----

    /// Writes a count in 2, 6 or 14 bytes.
    void WriteCount(unsigned long long count);
    unsigned long long ReadCount() {
        unsigned short shortCount;
        *this >> shortCount;
        return shortCount != 0xFFFF ? shortCount : ReadLongCount();
    }

    /// Writes a text up to its first zero; a narrow one as it is, a wide one as UTF-16.
    CXArchive& operator<<(CXTString<char> const& text);
    CXArchive& operator<<(CXTString<char16_t> const& text);

    /// Reads a text that was written in either width and ends it at its first zero. UTF-16 becomes text in the system's
    /// narrow code page, or empty where that fails; other bytes are taken as they are.
    /// Errors:  endOfFile for a text that is cut off, CXMemoryException for one longer than a string can be; the string
    ///          is then empty or as it was.
    CXArchive& operator>>(CXTString<char>& text);

    /// The same for a wide string: UTF-16 is taken as it is, bytes are converted from their encoding. Text of the
    /// OpaqueEncoding is not read: string and stream then stay as they were.
    CXArchive& operator>>(CXTString<char16_t>& text);

    /// Writes what stands in front of a text: its encoding, unless that is xEncodingAnsi or none that a stream knows,
    /// and its length, in 16-bit units for xEncodingUtf16 and else in bytes.
    void WriteStringLength(unsigned long long length, xStringEncoding encoding);

    /// Reads what stands in front of a text.
    /// @param encoding  Receives xEncodingAnsi, xEncodingUtf8, xEncodingUtf16 or OpaqueEncoding.
    /// @return the length that the stream claims.
    unsigned long long ReadStringLength(xStringEncoding& encoding);

    // ---- Objects ----

    /// Stores an object with all that its Serialize stores, or a reference to it where the stream has it already.
    /// Null is stored as a reference to nothing, which a reader understands only behind a first class: a stream must
    /// not begin with it.
    /// Errors:  genericException for a class that is not serializable and for objects that nest too deep.
    void WriteObject(CXObject const* object);

    /// Gives the object that stands next in the stream, new or met before; null for a stored null. The class comment
    /// says who owns it.
    /// @param requested  The class that the object must be of, or derive from; null for any.
    /// Errors:  badIndex for a reference to nothing that was read, badClass for an unknown class or one that is not
    ///          `requested`, badSchema, genericException for objects that nest too deep, CXMemoryException for a class
    ///          that cannot be created; what Serialize throws.
    CXObject* ReadObject(CXRuntimeClass const* requested);

    CXArchive& operator<<(CXObject const* object) {
        WriteObject(object);
        return *this;
    }
    CXArchive& operator>>(CXObject*& object) {
        object = ReadObject(nullptr);
        return *this;
    }
    CXArchive& operator>>(CXObject const*& object) {
        object = ReadObject(nullptr);
        return *this;
    }

    /// Stores a class by itself: its record, or a reference where the stream has it already.
    /// Errors:  badClass for null, genericException for a class that is not serializable and on a loading archive.
    void WriteClass(CXRuntimeClass const* record);

    /// Reads a class that stands by itself or in front of its object.
    /// @param requested  The class that it must be, or derive from; null for any.
    /// @param storedSchema  If not null, receives the schema that the stream has for the class.
    /// @param objectTag  Null where only a class may come. Else an object reference is understood too: its tag goes
    ///                   here and the result is null. With a class it receives the class's tag as it was read, whose
    ///                   bit 31 is set.
    /// Errors:  as ReadObject; genericException on a storing archive and for a requested class that is not
    ///          serializable. An output that was not reached is untouched.
    CXRuntimeClass const* ReadClass(CXRuntimeClass const* requested, unsigned int* storedSchema = nullptr,
                                    unsigned int* objectTag = nullptr);

    /// Stores a class when storing; checks that it comes next when loading.
    void SerializeClass(CXRuntimeClass const* record);

protected:
    /// Brings `needed` bytes more into the buffer than are unread in it.
    /// Errors:  endOfFile, or bufferTooSmall when both together exceed the buffer.
    void FillBuffer(unsigned long long needed);

    /// Writes length, encoding and text, up to its zero; null is empty. The encoding names what the text is in, and
    /// converts nothing.
    void WriteString(char const* text, xStringEncoding encoding);
    void WriteString(char16_t const* text, xStringEncoding encoding);

private:
    class Nesting;

    /// An entry of the load array: what a tag of the stream stands for.
    struct loadedPtr {
        enum Kind : unsigned int {
            Nothing = 0,
            Class = 1,
            Object = 2
        };

        void const* pointer = nullptr; ///< To the class or the object; null also for an object whose loading failed.
        Kind kind = Nothing;
        unsigned int schema = 0xFFFFFFFF; ///< The stored schema of a class.
    };

    /// The tags of what was stored, by address.
    class StoreMap : public CHashMap<detail::StoredAddress, detail::StoredAddress, unsigned int> {
    public:
        /// Enters a tag for an address that has none, and is true then; else gives the tag that it has.
        bool Enter(detail::StoredAddress address, unsigned int& tag) {
            return this->InsertWith(address, [&](auto& slot, bool isNew) {
                if (isNew) {
                    slot.key = address;
                    slot.value = tag;
                } else {
                    tag = slot.value;
                }
            }) != 0;
        }
    };

    static_assert(std::endian::native == std::endian::little, "scalars are stored as they lie in memory");

    template <class T>
    CXArchive& Store(T value) {
        if (Room() < sizeof(T) || IsLoading()) [[unlikely]]
            MakeRoom(sizeof(T));
        std::memcpy(cursor, &value, sizeof(T));
        cursor += sizeof(T);
        return *this;
    }

    template <class T>
    CXArchive& Load(T& value) {
        if (Unread() < sizeof(T) || IsStoring()) [[unlikely]]
            Fetch(sizeof(T));
        std::memcpy(&value, cursor, sizeof(T));
        cursor += sizeof(T);
        return *this;
    }

    std::size_t Unread() const { return static_cast<std::size_t>(end - cursor); }
    std::size_t Room() const { return static_cast<std::size_t>(end - cursor); }
    std::size_t Pending() const { return static_cast<std::size_t>(cursor - bufferStart); }
    CXFile& OpenFile() const;
    void SetSpan(unsigned char* start, unsigned char* position, unsigned char* spanEnd);
    void TakeSpan(unsigned int command);
    void MakeRoom(std::size_t count);
    void Fetch(std::size_t count);
    void WriteThrough(unsigned char const* data, unsigned long long count);
    unsigned long long ReadThrough(unsigned char* data, unsigned long long count);
    void Refill(unsigned long long needed);
    unsigned long long ReadLongCount();

    unsigned long long ReadLength(xStringEncoding& encoding, unsigned long long& consumed);
    void StepBack(unsigned long long count);
    template <class T>
    void ReadText(CXTString<T>& text, unsigned long long length);

    StoreMap& Stored();
    unsigned int TakeTag();
    void WriteReference(unsigned int tag, unsigned int classBit);
    unsigned int ReadTag(bool& isNewClass);
    loadedPtr FindClass(unsigned int tag) const;
    loadedPtr ClassOf(unsigned int tag, bool isNewClass, CXRuntimeClass const* requested);
    loadedPtr ReadNewClass();
    CXObject* FindObject(unsigned int tag, CXRuntimeClass const* requested) const;
    CXObject* ReadNewObject(CXRuntimeClass const& record, unsigned int storedSchema);

    [[noreturn]] void Throw(CXArchiveException::ArchiveExceptionType cause) const;

    CXTString<char16_t> fileName; ///< for the exceptions, as the file had it when the archive was opened
    CXFile* file;                 ///< null after Close or Abort
    unsigned int mode;
    bool userBuffer = true;        ///< the buffer is the caller's or the file's, not to be freed here
    bool directBuffer = false;     ///< the buffer is the file's own memory, a span at a time
    unsigned long long bufferSize; ///< bytes
    unsigned char* bufferStart = nullptr;
    unsigned char* cursor = nullptr; ///< storing: the next free byte; loading: the next unread byte
    unsigned char* end = nullptr;    ///< storing: the end of the room; loading: the end of what was read
    unsigned int schema = 0xFFFFFFFF;
    unsigned int mapCount = 1; ///< the next tag; classes and objects take theirs from it in the order of the stream
    std::unique_ptr<StoreMap> storeMap;                   ///< made by the first class or object
    CXArray<loadedPtr, loadedPtr const&> loadArray{true}; ///< what was loaded, by tag
    void* userData = nullptr;
    unsigned int depth = 0; ///< objects that are being stored or loaded, one inside the other
    unsigned int maxDepth = DefaultMaxDepth;
};
