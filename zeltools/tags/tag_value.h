// SPDX-License-Identifier: MIT
// The typed value that travels through the tag language: filled by whoever answers a tag, changed by the parameters
// that a template names, converted to the type that is asked for, printed or stored.
//
//     CTagValue value;
//     value.SetFilename(u"\\home\\ana\\wood.jpg");
//     value.HandleParametersAndConvertToType(TAGDATA_TEXT, u"(ext)");    // 1; GetText() is ".jpg"
//
//     value.SetDuration(3661);
//     value.HandleParametersAndConvertToType(TAGDATA_TEXT, u"");         // 1; "01 h 01 mn 01 s"

#pragma once

#include "zeltools/foundation/api.h"
#include "zeltools/foundation/xarray.h"
#include "zeltools/foundation/xstring.h"
#include "zeltools/foundation/xtime.h"
#include "zeltools/persistence/custom_data.h"
#include "zeltools/tags/tag_data_types.h"

/// One value of one type, or none.
///
/// Each kind of content has a place of its own: a number and a float that all types of those bases share, and objects
/// that are made when they are first needed and then kept. A change of type empties the object that the new type needs
/// and leaves the others, so one value that serves many tags allocates once.
///
/// A copy is a view: it shares the objects of its source, is good for a short time only, and one of the two alone may
/// be destroyed while it owns them. Likewise an assignment drops the objects of its target without destroying them.
///
/// Errors:  conversions tell by their result, and nothing goes to the log.
/// Threads: one at a time.
class ZEL_API CTagValue {
public:
    using StringArray = CXArray<CXTString<char16_t>>;
    using UIntArray = CXArray<unsigned int, unsigned int>;
    using FloatArray = CXArray<float, float>;

    /// The id of the bytes of a TAGDATA_CUSTOMINFO in the custom store.
    static constexpr unsigned int CustomInfoId = 583;

    /// Makes an empty value.
    CTagValue() {}
    CTagValue(CTagValue const& other) = default;
    CTagValue& operator=(CTagValue const& other) = default;
    virtual ~CTagValue();

protected:
    /// Applies one parameter to the value. A subclass that has parameters of its own passes on the names that it does
    /// not know.
    ///
    /// | Value    | Name                                               | Becomes                                 |
    /// |----------|----------------------------------------------------|-----------------------------------------|
    /// | date     | any                                                | text, by the letters d, h, t in it      |
    /// | filename | ext, name, path, shortname, topdir, root, fullpath | that part, a filename again             |
    /// | filename | size                                               | file size; nothing where it is missing  |
    /// | filename | createdate, lastwritedate                          | date; nothing where the disk gives none |
    /// | filename | kind                                               | text                                    |
    ///
    /// @return the type that the value has afterwards; the caller enters it. The present type where the name is empty,
    ///         no parameter of CTags::parametersMap, or nothing to a value of this type; 0 on failure.
    virtual _TAGDATA_INFO HandleParameters(CXTString<char16_t> const& name);

public:
    // ---- The type ----

    _TAGDATA_INFO GetDataType() const { return type; }

    /// Whether there is no value.
    int IsEmpty() const { return type == TAGDATA_NONE; }

    /// Takes the value away. The objects are emptied and kept; the date keeps its time.
    void Init();

    /// Gives the value this type, flags cut off, and an empty object to hold it; a date keeps its time.
    ///
    /// Numbers and floats have no object: their types leave the value empty, and their setters are to be called.
    void InitType(_TAGDATA_INFO newType);

    // ---- Numbers and floats; a getter reads whatever the type is ----

    void SetUInt(unsigned int value) { SetNumber(value, TAGDATA_UINT); }
    unsigned int GetUInt() const { return static_cast<unsigned int>(number); }
    void SetInt(int value) { SetNumber(static_cast<unsigned long long>(value), TAGDATA_INT); }
    int GetInt() const { return static_cast<int>(number); }
    void SetBool(int value) { SetNumber(static_cast<unsigned long long>(value), TAGDATA_BOOL); }
    int GetBool() const { return static_cast<int>(number); }
    void SetColor(unsigned int value) { SetNumber(value, TAGDATA_COLOR); }
    unsigned int GetColor() const { return static_cast<unsigned int>(number); }
    /// Takes 32 bits only; the parameter `size` of a filename gives all 64.
    void SetFileSize(unsigned int value) { SetNumber(value, TAGDATA_FILESIZE); }
    unsigned long long GetFileSize() const { return number; }
    void SetFloat(float value) { SetReal(value, TAGDATA_FLOAT); }
    float GetFloat() const { return real; }
    /// Seconds.
    void SetDuration(float value) { SetReal(value, TAGDATA_DURATION); }
    float GetDuration() const { return real; }
    /// Millimetres.
    void SetLength(float value) { SetReal(value, TAGDATA_LENGTH); }
    float GetLength() const { return real; }
    /// Dots per inch.
    void SetResolution(float value) { SetReal(value, TAGDATA_RESOLUTION); }
    float GetResolution() const { return real; }

    // ---- Objects; a getter makes one where there is none and leaves the type ----

    /// Null counts as the empty text.
    void SetText(CXTString<char16_t> const& value);
    void SetText(char16_t const* value);
    void SetFilename(CXTString<char16_t> const& value);
    /// Appends to a text or filename; a value of another type becomes this text.
    void AddText(CXTString<char16_t> const& value);
    /// Both give the one text object.
    CXTString<char16_t>& GetText();
    CXTString<char16_t>& GetFilename() { return GetText(); }
    /// Strips white space at both ends of a text or filename.
    void TrimText();

    void SetDate(CXTime const& value);
    CXTime& GetDate();

    void SetStringArray(StringArray const& values);
    void SetUIntArray(UIntArray const& values);
    void SetFloatArray(FloatArray const& values);
    /// @param empty  Whether an existing array is emptied.
    StringArray& GetStringArray(bool empty);
    UIntArray& GetUIntArray(bool empty);
    /// Unlike the others this one goes by the unsigned array: while there is none, the float array is always empty
    /// afterwards; once there is one, no float array is made, and without one the result is an array of the calling
    /// thread, empty at each call, that belongs to no value. Loading, conversions, SetFloatArray and AddFloat are not
    /// touched by this.
    FloatArray& GetFloatArray(bool empty);
    /// Append to an array of their base; a value of another type becomes TAGDATA_UINTS, TAGDATA_INTS, TAGDATA_FLOATS
    /// of this one element.
    void AddUInt(unsigned int value);
    void AddInt(int value);
    void AddFloat(float value);

    void SetCustomData(CCustomData const& value);
    CCustomData& GetCustomData();
    /// Null counts as no bytes, and without bytes there is no chunk.
    void SetCustomInfo(void const* data, unsigned int size);
    /// Give the bytes of a TAGDATA_CUSTOMINFO, valid until the custom store changes; null and 0 where there are none.
    void GetCustomInfo(void const*& data, unsigned int& size);
    void const* GetCustomPtr(unsigned int& size);

    // ---- Parameters, conversion, storage ----

    /// Applies a chain of parameters, outermost first, and converts the result.
    ///
    /// A name that is no parameter ends the chain, and the value is converted as it is then. Types of one base
    /// become each other by name. Beyond that there are these ways, and no others:
    ///
    /// | From                           | To                                                         |
    /// |--------------------------------|------------------------------------------------------------|
    /// | uint                           | text, uints, floats                                        |
    /// | float                          | text; uint, bool, uints, cut towards zero; floats          |
    /// | int, bool, file size, colour   | text                                                       |
    /// | duration, length, resolution   | text                                                       |
    /// | date                           | text                                                       |
    /// | strings, uints, ints, floats   | text, each element followed by its separator               |
    /// | uints, ints                    | uint, int: the first element                               |
    /// | bytes (TAGDATA_CUSTOMINFO)     | text, a blank for what does not print                      |
    /// | text                           | arrays, cut at each " ; "; numbers and floats, by scanning |
    /// | text                           | date, by ConvertText2Time                                  |
    /// | text                           | bytes, as many as it has characters                        |
    ///
    /// A length of 10 mm or less gives an empty text. A float beyond 64 bits gives the nearest number there is, one
    /// below 0 its two's complement, and what is no number 0.
    ///
    /// @param requested   The type, flags ignored; 0 applies the parameters alone.
    /// @param parameters  As "(createdate(d+h))"; empty for none.
    /// @return 1 on success. On 0 the value is what the parameters left, with no conversion begun, except that a text
    ///         that is no date leaves a date, with the time that the object had before.
    int HandleParametersAndConvertToType(unsigned int requested, CXTString<char16_t> const& parameters);

    /// Reads a CXTString<char16_t> for a type of base text and 32 bits for one of base number.
    /// @return whether there is a value now; 0 for null, with the value as it was, and for types of another base.
    int GetValueFromVoid(void const* source, _TAGDATA_INFO sourceType);

    /// Reads the value of that id as that type. Numbers, dates and arrays of numbers must have been stored as such; a
    /// value of another kind is an empty text, or none. A date before 1900 becomes 1 January 1970.
    /// @return whether there is a value now.
    int GetValueFromData(CCustomData const& data, unsigned int id, _TAGDATA_INFO storedType);

    /// Stores the value under that id: a number in 32 bits, a date in whole seconds of local time. An array without
    /// elements, and bytes that are missing, remove the id.
    /// @return 0 for an empty value, a date that has no broken-down form and an array of 4 GiB or more, with the store
    ///         untouched; else 1.
    int SetValueToData(CCustomData& data, unsigned int id) const;

protected:
    _TAGDATA_INFO type = TAGDATA_NONE; ///< Without flags.
    CCustomData* custom = nullptr;     ///< The objects: owned, null until first needed.
    StringArray* strings = nullptr;
    UIntArray* uints = nullptr;
    FloatArray* floats = nullptr;
    CXTString<char16_t>* text = nullptr;
    CXTime* date = nullptr;
    unsigned long long number = 0; ///< Of every type of base TAGDATA_UINT.
    float real = 0;                ///< Of every type of base TAGDATA_FLOAT.

private:
    void SetNumber(unsigned long long value, _TAGDATA_INFO newType) {
        number = value;
        type = newType;
    }
    void SetReal(float value, _TAGDATA_INFO newType) {
        real = value;
        type = newType;
    }
    StringArray& Strings();
    UIntArray& UInts();
    FloatArray& Floats();
    void ApplyParameters(CXTString<char16_t> const& parameters);
    bool ConvertTo(unsigned int target);
    bool ConvertToText();
    bool ConvertText(unsigned int target);
    void ConvertTextToArray(unsigned int target);
    bool ReadFrom(CCustomData const& data, unsigned int id);
    void WriteStore(CCustomData& data, unsigned int id) const;
};
