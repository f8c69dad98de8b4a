// SPDX-License-Identifier: MIT
// The property bag of the toolkit: typed values, each under a 32-bit id, in one run of bytes that is at once the form
// in memory, on disk and over the socket.
//
//     CCustomData data;
//     data.SetInt(FourCC("QUAL"), 85);
//     data.SetString(FourCC("NAME"), u"Wood");
//     int quality = 0;
//     data.GetInt(FourCC("QUAL"), quality, 75);       // true; 85
//     data.GetInt(FourCC("SIZE"), quality, 75);       // false; 75
//
//     unsigned long long size = 0;
//     void* const bytes = data.SerializeToData(size);
//     CCustomData copy;
//     copy.SerializeFromData(bytes, size);            // true; copy.IsEqual(data)
//     CCustomData::Free(bytes);
//
// It is not a document format: a value is read by who knows its id and its type.

#pragma once

#include "zeltools/foundation/api.h"
#include "zeltools/foundation/hash_map.h"
#include "zeltools/foundation/xarray.h"
#include "zeltools/foundation/xstring.h"
#include "zeltools/foundation/xtime.h"
#include "zeltools/persistence/custom_data_kinds.h"
#include "zeltools/process/xcritical_section.h"

#include <atomic>
#include <cstddef>

class CCustomDataClass;
class CXArchive;

/// A set of typed values by id.
///
///     buffer:  | id size kind data | id size kind data | ...        | free    |
///              0                   offset of the second            size      capacity
///
/// One allocation holds all values as chunks, and a hash index knows the offset of each. A value that is set again in
/// the same size keeps its place; in another size it moves to the end.
///
/// Bytes from outside (SetData, Attach, a load, a nested store) are taken up to the last whole chunk. What a torn tail
/// claims to hold is not there, and what is set later must not fall into it, so it is cut off: GetData gives less than
/// was handed in. Where an id stands in such bytes twice, the last one counts.
///
/// Pointers into the store (GetData, GetCustomPtr, GetArray) hold until it changes.
///
/// Errors:  a getter answers with its default, and a setter that gets no memory or would pass 2^32 - 1 bytes stores
///          nothing; only what says so throws.
/// Threads: any. Each store has a recursive lock that nearly every operation takes; GetData, GetCustomPtr, GetArray and
///          GetTimeStamp do not, so who needs them while others write holds GetThreadLock around them. An operation on
///          two stores takes both locks, in one order everywhere, so that threads which copy in opposite directions do
///          not block each other; who holds the lock of one of them already must not count on that.
class ZEL_API CCustomData {
public:
    /// Makes an empty store.
    CCustomData();
    /// Copies as operator= does.
    CCustomData(CCustomData const& other);

    // The four virtual operations, in the order of their slots

    /// Stores the values in an archive, or replaces them by what it delivers, under the lock.
    /// Errors: loading, CXFileException with cause 1 for what is no stream of this class, and what the archive throws;
    ///         the store is then empty.
    virtual void Serialize(CXArchive& archive);

    /// Replaces the values by those of a stream in memory.
    /// @return whether there are any now; false for a bad stream, which leaves the store empty.
    /// Errors: CXInvalidArgException for null data with a size above 0; nothing else.
    virtual bool SerializeFromData(void const* data, unsigned long long size);

    /// Gives the stream in one block.
    /// @param size  Receives its bytes; 0 without values.
    /// @return a block for Free; null without values, and where memory runs out.
    virtual void* SerializeToData(unsigned long long& size) const;

    virtual ~CCustomData();

    /// What the virtual operation of that name does, on any store.
    static bool SerializeFromData(CCustomData& target, void const* data, unsigned long long size);

    /// Copies values, string format and time stamp.
    /// Errors: CXMemoryException; this store is then empty.
    CCustomData& operator=(CCustomData const& other);

    /// @name Setting a value
    /// An id that is there changes its value and kind. A value without bytes removes the id.
    /// @{
    void SetInt(unsigned int id, int value);
    void SetUInt(unsigned int id, unsigned int value);
    /// LONG and ULON have 32 bits everywhere.
    void SetLong(unsigned int id, int value);
    void SetULong(unsigned int id, unsigned int value);
    void SetLongInt(unsigned int id, long long value);
    void SetULongInt(unsigned int id, unsigned long long value);
    /// Stores a size as SetULongInt does.
    void SetSizet(unsigned int id, std::size_t value);
    void SetChar(unsigned int id, char value);
    void SetUChar(unsigned int id, unsigned char value);
    /// Stores the number as it stands.
    void SetBool(unsigned int id, int value);
    void SetFloat(unsigned int id, float value);
    void SetDouble(unsigned int id, double value);
    /// Stores the address, not what is there.
    void SetPtr(unsigned int id, void const* value);
    void SetXTime(unsigned int id, CXTime const& value);
    /// Stores the date in UTC; a time below -43200 stores nothing.
    void SetUTCTime(unsigned int id, CXTime const& value);
    /// Null data reserve the bytes and leave their content open, except in a value of that size, which keeps it.
    void SetBinary(unsigned int id, void const* data, unsigned int size);
    /// Stores the text with its terminator, so that an empty one is a value too.
    void SetString(unsigned int id, CXTString<char16_t> const& value);
    void SetStringW(unsigned int id, CXTString<char16_t> const& value);
    void SetStringA(unsigned int id, CXTString<char> const& value);
    /// Both store the texts end to end; without any the id is removed.
    void SetStringArray(unsigned int id, CXArray<CXTString<char16_t>> const& values);
    void SetStringList(unsigned int id, CXArray<CXTString<char16_t>> const& values);
    /// Stores elements of one size; null data give zeros.
    /// @return false for a count of 0, which removes the id, and where nothing could be stored.
    bool SetArray(unsigned int id, void const* data, unsigned int count, unsigned int elementSize);
    /// Stores another store's chunks as one value. Its string format is not kept.
    void SetCustomData(unsigned int id, CCustomData const& value);
    /// Stores what the object writes into an empty store.
    void SetCustomClass(unsigned int id, CCustomDataClass const& object);
    /// Replaces the store under `id` by `data`. In spite of its name and of `skipExisting` it merges nothing: a host
    /// that wants a merge reads the nested store, calls Copy on it and sets it.
    void AddToCustomData(unsigned int id, CCustomData const& data, int skipExisting);
    /// @}

    /// @name Getting a value
    /// @return true where the id is there with this very size and kind; else false, and `value` is the default. A store
    ///         from a legacy file knows no kinds, so there the size alone decides.
    /// @{
    bool GetInt(unsigned int id, int& value, int defaultValue = 0) const;
    bool GetUInt(unsigned int id, unsigned int& value, unsigned int defaultValue = 0) const;
    bool GetLong(unsigned int id, int& value, int defaultValue = 0) const;
    bool GetULong(unsigned int id, unsigned int& value, unsigned int defaultValue = 0) const;
    bool GetLongInt(unsigned int id, long long& value, long long defaultValue = 0) const;
    bool GetULongInt(unsigned int id, unsigned long long& value, unsigned long long defaultValue = 0) const;
    bool GetSizet(unsigned int id, std::size_t& value, std::size_t defaultValue = 0) const;
    bool GetChar(unsigned int id, char& value, char defaultValue = 0) const;
    bool GetUChar(unsigned int id, unsigned char& value, unsigned char defaultValue = 0) const;
    bool GetBool(unsigned int id, int& value, int defaultValue = 0) const;
    bool GetBool(unsigned int id, bool& value, bool defaultValue = false) const;
    bool GetFloat(unsigned int id, float& value, float defaultValue = 0) const;
    bool GetDouble(unsigned int id, double& value, double defaultValue = 0) const;
    /// Null where there is none.
    bool GetPtr(unsigned int id, void*& value) const;
    void* GetPtr(unsigned int id) const;
    bool GetXTime(unsigned int id, CXTime& value, CXTime const& defaultValue = CXTime()) const;
    /// Reads the stored UTC date as local time, so that a time comes back shifted by the zone's offset.
    /// Errors: CXInvalidArgException for a date that is none, or lies before 1970; `value` is then untouched.
    bool GetUTCTime(unsigned int id, CXTime& value, CXTime const& defaultValue = CXTime()) const;
    /// Copies a value of exactly `size` bytes; the target is untouched otherwise.
    bool GetBinary(unsigned int id, void* target, unsigned int size) const;

    /// Gives a text up to its first zero, converted where it is stored narrow.
    /// @return true for any value, also for one that is no text and then gives the default; false, with the default,
    ///         where there is none.
    bool GetString(unsigned int id, CXTString<char16_t>& value,
                   CXTString<char16_t> const& defaultValue = CXTString<char16_t>()) const;
    /// The same, but UTF-8 counts as no text.
    bool GetStringW(unsigned int id, CXTString<char16_t>& value,
                    CXTString<char16_t> const& defaultValue = CXTString<char16_t>()) const;
    /// The same for narrow text. UTF-8 comes byte for byte.
    bool GetStringA(unsigned int id, CXTString<char>& value,
                    CXTString<char> const& defaultValue = CXTString<char>()) const;
    /// Both replace `values` by the stored texts, of any encoding. A last text without terminator is not one of them.
    /// @return their number.
    unsigned int GetStringArray(unsigned int id, CXArray<CXTString<char16_t>>& values) const;
    unsigned int GetStringList(unsigned int id, CXArray<CXTString<char16_t>>& values) const;
    /// Points to the elements of an array, at any alignment. Takes no lock.
    /// @param count  Receives their number; 0 with null.
    /// @return null where the value is no array of elements of this size.
    void const* GetArray(unsigned int id, unsigned int& count, unsigned int elementSize) const;
    /// Replaces the target by a nested store. One of the older form is rewritten in the present form on the way.
    /// @return false, with an empty target, where there is none.
    /// Errors: CXMemoryException; the target is then empty.
    bool GetCustomData(unsigned int id, CCustomData& target);
    /// Lets the object read the nested store.
    /// @return what the object answers; false where there is none, and the object is then reset.
    bool GetCustomClass(unsigned int id, CCustomDataClass& object);
    /// @}

    // Asking about values

    /// The bytes of a value; 0 where there is none.
    unsigned int GetDataSize(unsigned int id) const;

    /// The kind of a value, mostly one of CustomDataKind; 0 where there is none.
    unsigned int GetDataKindOf(unsigned int id) const;

    /// Whether there is any value.
    bool HasData() const;

    /// Whether the index knows the id.
    bool HasData(unsigned int id) const;

    /// The number of ids.
    unsigned int GetIDCount() const;

    /// The id and the kind of a value, in the order of the chunks; 0xFFFFFFFF and 0 past the end.
    unsigned int GetIDByIndex(unsigned int index, unsigned int& kind) const;

    /// A hash over a value's bytes from the last to the first: 32-bit FNV-1a with signed bytes. Part of stored data.
    /// @return 0x811C9DC5 where there is none.
    unsigned int GetChecksum(unsigned int id) const;

    /// Whether both stores have the same ids with the same bytes and kinds, in any order.
    /// Errors: CXMemoryException.
    bool IsEqual(CCustomData const& other) const;

    // Changing the set

    /// Removes a value; false where there is none.
    bool RemoveCustom(unsigned int id);

    /// Removes all values and gives the memory back.
    void RemoveAll();

    /// Removes the value under `newId` and writes `newId` into the chunk of `oldId`. The index stays as it was: until
    /// something rebuilds it (Attach, SetData, a load) the value is reached by neither id, while HasData still knows
    /// the old one.
    /// @return whether the old id was there.
    bool ChangeID(unsigned int oldId, unsigned int newId);

    /// A new store with the same content, for delete; null without a buffer.
    /// Errors: CXMemoryException.
    CCustomData* Copy() const;

    /// What Copy with a source does with the values that are here.
    enum CopyFlags : unsigned int {
        CopySkipExisting = 1, ///< An id that is here keeps its value.
        CopyKeep = 2,         ///< Without it all that is here goes first.
    };

    /// Takes over the values of another store. A blank one takes the kind that the id has here; where it has none and
    /// the string formats differ, it is left out.
    /// @param source  Null does nothing.
    /// @param flags   CopyFlags; 0 does nothing.
    void Copy(CCustomData const* source, unsigned int flags);

    /// Takes over the values of some ids, the last of which is followed by 0.
    /// @return how many there were; 0 for a null source.
    unsigned int CopyID(CCustomData const* source, unsigned int id, ...);

    // The bytes

    /// The chunks. Takes no lock.
    void const* GetData(unsigned int& size) const;

    /// Replaces all by a copy of these chunks; null or a size of 0 leaves the store empty.
    /// Errors: CXMemoryException; the store is then empty.
    void SetData(void const* data, unsigned int size);

    /// The bytes of a value; null and 0 where there is none. Takes no lock.
    void const* GetCustomPtr(unsigned int id, unsigned int& size) const;

    /// Gives the chunks away, for Attach or Free, and leaves the store empty.
    void* Detach(unsigned int& size);

    /// Replaces all by these chunks, which must come from Alloc and belong to the store from now on, also where it
    /// throws.
    /// Errors: CXMemoryException; the store is then empty.
    void Attach(void* data, unsigned int size);

    /// Memory for Attach; null where there is none.
    static void* Alloc(unsigned int size);

    /// Releases what Alloc, Detach or SerializeToData gave.
    static void Free(void* data);

    /// Gives back the memory that is not in use.
    void FreeExtra();

    /// The millisecond, by the system's counter, of the last change. A value that is set in its old size does not
    /// count as one. Takes no lock.
    unsigned long long GetTimeStamp() const { return timeStamp.load(std::memory_order_relaxed); }

    /// The lock, for who needs several operations in one.
    CXCriticalSection* GetThreadLock() const { return &threadLock; }

    // Text and files

    /// The values as text, one a line, for people who look for a fault.
    ///
    ///     QUAL ( INT) : 85
    ///     NAME (UNIC) : Wood
    ///
    /// Lines end in CR LF. Nested stores follow below their line, down to MaxDumpDepth of them.
    /// @param indent  Whether the lines begin with tab characters: `level` of them, at most MaxDumpIndent, and one more
    ///                in each further nested store of the same store.
    CXTString<char16_t> DumpCustomData(bool indent, int level);

    /// How deep a dump follows nested stores. Settings nest three or four deep; each level of a dump needs stack.
    static constexpr int MaxDumpDepth = 64;
    /// The widest indentation. A file of empty nested stores would otherwise give a text of the square of its size.
    static constexpr int MaxDumpIndent = 256;

    /// Writes the store into a preferences file, as the record of these two keys.
    /// @return false where the file could not be written.
    bool SaveToPrefs(CXTString<char16_t> const& path, unsigned int key1, unsigned int key2) const;

    /// Replaces the values by the record of these two keys.
    /// @param tryPreviousVersion  Where the file is missing, that of the program's previous version is taken over.
    /// @return whether the record was there.
    bool LoadFromPrefs(CXTString<char16_t> path, unsigned int key1, unsigned int key2, bool tryPreviousVersion);

protected:
    /// Changes a value that has this size already, and leaves the time stamp. Null data leave the bytes.
    /// @return false where there is none of this size.
    bool ReplaceCustom(unsigned int id, void const* data, unsigned int size, unsigned int kind);

    /// Sets a value: see the setters. Null data leave the bytes open.
    void SetCustom(unsigned int id, void const* data, unsigned int size, unsigned int kind);

    /// Copies a value of this size and kind. The blank kind asks for any.
    /// @return the stored kind; 0 where there is none, with the target untouched.
    unsigned int GetCustom(unsigned int id, void* target, unsigned int size, unsigned int kind) const;

    void SetStrings(unsigned int id, CXArray<CXTString<char16_t>> const& values);
    unsigned int GetStrings(unsigned int id, CXArray<CXTString<char16_t>>& values, bool asArray) const;

    /// Loads what follows a legacy magic.
    /// Errors: as Serialize; CXArchiveException with cause 4 for an archive that stores.
    void ReadPreviousVersion(CXArchive& archive);

    /// Enters legacy records into a store, up to the first that does not lie in the area whole.
    static void ConvertPreviousData(CCustomData& target, CustomPrivateDataOld const* records, unsigned int size);

private:
    using OffsetMap = CHashMap<unsigned int, unsigned int, unsigned int>;

    /// The offset of an id whose chunk is lost: see ForgetRenamed.
    static constexpr unsigned int Nowhere = 0xFFFFFFFF;

    // All of these are called with the lock held. Those in custom_data_private.h are inline.
    CustomPrivateData* ChunkAt(unsigned int offset) const;
    CustomPrivateData* GetFirstChunk() const;
    CustomPrivateData* GetNextChunk(CustomPrivateData const* chunk) const;
    CustomPrivateData* FindChunk(unsigned int id) const;
    CustomPrivateData const* ReachChunk(unsigned int id) const;
    CustomPrivateData* PlaceChunk(unsigned int id, unsigned int chunkSize, unsigned int kind);
    CustomPrivateData* GetNewChunkEntry(unsigned int id, unsigned int chunkSize, unsigned int kind);
    bool ReserveBytes(unsigned int needed);
    bool EnterOffset(unsigned int id, unsigned int offset);
    void Expect(unsigned int count, unsigned int byteCount);
    void RemoveChunk(CustomPrivateData* chunk, unsigned int id);
    void RemoveUnknownChunks();
    void ForgetRenamed(unsigned int firstLost);
    void UpdateOffsetMap(unsigned int count);
    void TakeBuffer(void* data, unsigned int byteCount, unsigned int expectedCount);
    void Clear();
    void Touch();
    bool IsOwnMemory(void const* data) const;
    unsigned int WantedKind(unsigned int kind) const;
    template <class T>
    void SetScalar(unsigned int id, T value, unsigned int kind);
    template <class T>
    bool GetScalar(unsigned int id, T& value, T defaultValue, unsigned int kind) const;
    void StoreTo(CXArchive& archive);
    void LoadFrom(CXArchive& archive);
    void DumpChunks(CXTString<char16_t>& text, bool indent, int level, int depth);
    void DumpValue(CXTString<char16_t>& text, CustomPrivateData const& chunk);
    void DumpNested(CXTString<char16_t>& text, unsigned int id, bool indent, int level, int depth);

    OffsetMap* offsetMap = nullptr;       // offset of each id's chunk; null until the first chunk
    unsigned int stringFormat = 0;        // 0: strings have kinds; 1, 2: blank chunks are wide, narrow strings
    mutable CXCriticalSection threadLock; // guards all but the time stamp
    unsigned char* buffer = nullptr;      // from malloc; whole chunks only
    unsigned int size = 0;                // bytes in use
    unsigned int capacity = 0;            // bytes allocated
    std::atomic<unsigned long long> timeStamp{0};
    bool renamed = false; // the index may have ids whose chunk is under another id
};
