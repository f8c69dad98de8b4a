// SPDX-License-Identifier: MIT
// Values of fixed size, times, blocks and arrays.

#include "zeltools/foundation/invalid_arg.h"
#include "zeltools/persistence/custom_data.h"
#include "zeltools/persistence/custom_data_private.h"
#include "zeltools/platform/clock.h"

#include <limits>

using detail::StoreLock;

template <class T>
void CCustomData::SetScalar(unsigned int id, T value, unsigned int kind) {
    StoreLock const hold(&threadLock);
    if (CustomPrivateData* const chunk = PlaceChunk(id, sizeof(T), kind))
        std::memcpy(chunk->Data(), &value, sizeof(T));
}

template <class T>
bool CCustomData::GetScalar(unsigned int id, T& value, T defaultValue, unsigned int kind) const {
    StoreLock const hold(&threadLock);
    CustomPrivateData const* const chunk = ReachChunk(id);
    bool const found = chunk && chunk->size == sizeof(T) && (chunk->kind == kind || stringFormat != 0);
    if (found)
        std::memcpy(&value, chunk->Data(), sizeof(T));
    else
        value = defaultValue;
    return found;
}

// ---- Numbers ----

void CCustomData::SetInt(unsigned int id, int value) {
    SetScalar(id, value, CustomDataInt);
}
void CCustomData::SetUInt(unsigned int id, unsigned int value) {
    SetScalar(id, value, CustomDataUInt);
}
void CCustomData::SetLong(unsigned int id, int value) {
    SetScalar(id, value, CustomDataLong);
}
void CCustomData::SetULong(unsigned int id, unsigned int value) {
    SetScalar(id, value, CustomDataULong);
}
void CCustomData::SetLongInt(unsigned int id, long long value) {
    SetScalar(id, value, CustomDataLongInt);
}
void CCustomData::SetULongInt(unsigned int id, unsigned long long value) {
    SetScalar(id, value, CustomDataULongInt);
}
void CCustomData::SetSizet(unsigned int id, std::size_t value) {
    SetULongInt(id, value);
}
void CCustomData::SetChar(unsigned int id, char value) {
    SetScalar(id, value, CustomDataChar);
}
void CCustomData::SetUChar(unsigned int id, unsigned char value) {
    SetScalar(id, value, CustomDataUChar);
}
void CCustomData::SetBool(unsigned int id, int value) {
    SetScalar(id, value, CustomDataBool);
}
void CCustomData::SetFloat(unsigned int id, float value) {
    SetScalar(id, value, CustomDataFloat);
}
void CCustomData::SetDouble(unsigned int id, double value) {
    SetScalar(id, value, CustomDataDouble);
}
void CCustomData::SetPtr(unsigned int id, void const* value) {
    SetScalar(id, value, CustomDataPtr);
}

bool CCustomData::GetInt(unsigned int id, int& value, int defaultValue) const {
    return GetScalar(id, value, defaultValue, CustomDataInt);
}
bool CCustomData::GetUInt(unsigned int id, unsigned int& value, unsigned int defaultValue) const {
    return GetScalar(id, value, defaultValue, CustomDataUInt);
}
bool CCustomData::GetLong(unsigned int id, int& value, int defaultValue) const {
    return GetScalar(id, value, defaultValue, CustomDataLong);
}
bool CCustomData::GetULong(unsigned int id, unsigned int& value, unsigned int defaultValue) const {
    return GetScalar(id, value, defaultValue, CustomDataULong);
}
bool CCustomData::GetLongInt(unsigned int id, long long& value, long long defaultValue) const {
    return GetScalar(id, value, defaultValue, CustomDataLongInt);
}
bool CCustomData::GetULongInt(unsigned int id, unsigned long long& value, unsigned long long defaultValue) const {
    return GetScalar(id, value, defaultValue, CustomDataULongInt);
}
bool CCustomData::GetSizet(unsigned int id, std::size_t& value, std::size_t defaultValue) const {
    return GetScalar(id, value, defaultValue, CustomDataULongInt);
}
bool CCustomData::GetChar(unsigned int id, char& value, char defaultValue) const {
    return GetScalar(id, value, defaultValue, CustomDataChar);
}
bool CCustomData::GetUChar(unsigned int id, unsigned char& value, unsigned char defaultValue) const {
    return GetScalar(id, value, defaultValue, CustomDataUChar);
}
bool CCustomData::GetBool(unsigned int id, int& value, int defaultValue) const {
    return GetScalar(id, value, defaultValue, CustomDataBool);
}
bool CCustomData::GetBool(unsigned int id, bool& value, bool defaultValue) const {
    int number = 0;
    bool const found = GetScalar(id, number, static_cast<int>(defaultValue), CustomDataBool);
    value = number != 0;
    return found;
}
bool CCustomData::GetFloat(unsigned int id, float& value, float defaultValue) const {
    return GetScalar(id, value, defaultValue, CustomDataFloat);
}
bool CCustomData::GetDouble(unsigned int id, double& value, double defaultValue) const {
    return GetScalar(id, value, defaultValue, CustomDataDouble);
}
bool CCustomData::GetPtr(unsigned int id, void*& value) const {
    return GetScalar(id, value, static_cast<void*>(nullptr), CustomDataPtr);
}
void* CCustomData::GetPtr(unsigned int id) const {
    void* value = nullptr;
    GetPtr(id, value);
    return value;
}

// ---- Times ----

namespace {

/// The fields of a broken-down time that are stored, in the order in which struct tm has them too.
struct StoredTime {
    int seconds, minutes, hours, day, month, year, weekday, yearDay, daylight;
};
static_assert(sizeof(StoredTime) == 36);

/// Below this no zone's local time reaches 1970 any more, and so no reader could give the time back.
constexpr long long EarliestUtcTime = -43200;

} // namespace

void CCustomData::SetXTime(unsigned int id, CXTime const& value) {
    SetScalar(id, value.GetTime(), CustomDataXTime);
}

bool CCustomData::GetXTime(unsigned int id, CXTime& value, CXTime const& defaultValue) const {
    long long seconds = 0;
    bool const found = GetScalar(id, seconds, defaultValue.GetTime(), CustomDataXTime);
    value = seconds;
    return found;
}

void CCustomData::SetUTCTime(unsigned int id, CXTime const& value) {
    std::tm record{};
    if (value.GetTime() < EarliestUtcTime || !value.GetUTCTm(&record))
        return;
    SetScalar(id,
              StoredTime{record.tm_sec, record.tm_min, record.tm_hour, record.tm_mday, record.tm_mon, record.tm_year,
                         record.tm_wday, record.tm_yday, record.tm_isdst},
              CustomDataUTCTime);
}

bool CCustomData::GetUTCTime(unsigned int id, CXTime& value, CXTime const& defaultValue) const {
    StoredTime stored{};
    if (!GetScalar(id, stored, StoredTime(), CustomDataUTCTime)) {
        value = defaultValue;
        return false;
    }
    std::tm record{};
    record.tm_sec = stored.seconds;
    record.tm_min = stored.minutes;
    record.tm_hour = stored.hours;
    record.tm_mday = stored.day;
    record.tm_mon = stored.month;
    record.tm_year = stored.year;
    record.tm_isdst = stored.daylight;
    long long const seconds = platform::LocalToSeconds(&record);
    if (seconds < 0)
        detail::ThrowInvalidArg();
    value = seconds;
    return true;
}

// ---- Blocks and arrays ----

void CCustomData::SetBinary(unsigned int id, void const* data, unsigned int dataSize) {
    SetCustom(id, data, dataSize, CustomDataBinary);
}

bool CCustomData::GetBinary(unsigned int id, void* target, unsigned int dataSize) const {
    return GetCustom(id, target, dataSize, CustomDataBinary) != 0;
}

bool CCustomData::SetArray(unsigned int id, void const* data, unsigned int count, unsigned int elementSize) {
    StoreLock const hold(&threadLock);
    if (count == 0) {
        RemoveCustom(id);
        return false;
    }
    unsigned long long const bytes = 1ull * count * elementSize;
    constexpr unsigned long long mostBytes = std::numeric_limits<unsigned int>::max() - sizeof(count);
    if (bytes > mostBytes)
        return false;
    if (IsOwnMemory(data)) {
        CCustomData copy; // making room moves the elements that are to be stored
        return copy.SetArray(id, data, count, elementSize) &&
               SetArray(id, copy.GetArray(id, count, elementSize), count, elementSize);
    }
    CustomPrivateData* const chunk = PlaceChunk(id, static_cast<unsigned int>(sizeof(count) + bytes), CustomDataArray);
    if (!chunk)
        return false;
    std::memcpy(chunk->Data(), &count, sizeof(count));
    if (data)
        std::memcpy(chunk->Data() + sizeof(count), data, bytes);
    else
        std::memset(chunk->Data() + sizeof(count), 0, bytes);
    return true;
}

void const* CCustomData::GetArray(unsigned int id, unsigned int& count, unsigned int elementSize) const {
    count = 0;
    CustomPrivateData const* const chunk = ReachChunk(id);
    if (!chunk || chunk->size < sizeof(count))
        return nullptr;
    unsigned int stored = 0;
    std::memcpy(&stored, chunk->Data(), sizeof(stored));
    if (stored == 0 || (chunk->size - sizeof(stored)) / stored != elementSize)
        return nullptr;
    count = stored;
    return chunk->Data() + sizeof(stored);
}
