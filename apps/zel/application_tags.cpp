// SPDX-License-Identifier: MIT
#include "application_tags.h"

#include "guarded_text.h"
#include "media_facts.h"
#include "terminal.h"
#include "utf8_text.h"
#include <zeltools/files/paths/native_names.h>

#include <fmt/format.h>
#include <limits>

namespace zel {

namespace {

using Context = FileTagContext;
using Value = CTagValue;

constexpr unsigned int FileClass = FourCC("ZELF");
constexpr unsigned int MetadataClass = FourCC("ZELM");

/// What was read of the file; null where nothing was, or it could not be.
MediaFacts const* Media(Context const& context) {
    MediaFacts const* const media = context.facts->media.get();
    return media && media->answer.answered ? media : nullptr;
}
MediaFacts const* Image(Context const& context) {
    MediaFacts const* const media = Media(context);
    return media && !media->isScene ? media : nullptr;
}
MediaFacts const* Scene(Context const& context) {
    MediaFacts const* const media = Media(context);
    return media && media->isScene ? media : nullptr;
}

void Put(Value& value, std::string const& text) {
    value.SetText(FromUtf8(text));
}

/// A number of the registry has 32 bits; a larger one goes on as its digits.
void Put(Value& value, unsigned long long count) {
    if (count <= std::numeric_limits<unsigned int>::max()) {
        value.SetUInt(static_cast<unsigned int>(count));
    } else {
        Put(value, fmt::to_string(count));
    }
}

void Put(Value& value, std::optional<unsigned long long> const& count) {
    if (count) {
        Put(value, *count);
    }
}

void Put(Value& value, std::vector<std::string> const& texts) {
    value.InitType(TAGDATA_STRINGS);
    for (std::string const& text : texts) {
        value.GetStringArray(false).Add(FromUtf8(text));
    }
}

/// Four characters, of which the last ones may be blanks that nobody wants in a text.
void PutCode(Value& value, std::string const& code) {
    Put(value, code.substr(0, code.find_last_not_of(' ') + 1));
}

template <auto Member>
void FileFact(Context const& context, Value& value) {
    Put(value, context.facts->*Member);
}

template <auto Member>
void ImageFact(Context const& context, Value& value) {
    if (MediaFacts const* const image = Image(context)) {
        Put(value, image->*Member);
    }
}

template <auto Member>
void SceneCount(Context const& context, Value& value) {
    if (MediaFacts const* const scene = Scene(context)) {
        Put(value, scene->counts.*Member);
    }
}

template <auto Corner>
void BoxCorner(Context const& context, Value& value) {
    MediaFacts const* const scene = Scene(context);
    if (scene && !scene->box.IsEmpty()) {
        SceneVector const& point = scene->box.*Corner;
        value.AddFloat(point.x);
        value.AddFloat(point.y);
        value.AddFloat(point.z);
    }
}

template <int (CXTime::*Part)() const, int Add = 0>
void DatePart(Context const& context, Value& value) {
    Put(value, fmt::format("{:02}", (context.facts->lastWrite.*Part)() + Add));
}

constexpr char const* FileGroup = "File";
constexpr char const* TypeGroup = "File type";
constexpr char const* ImageGroup = "Image";
constexpr char const* SceneGroup = "Scene";
constexpr char const* ReadingGroup = "Reading";
constexpr char const* MetadataGroup = "Metadata";
constexpr auto None = TagNeeds::Nothing;
constexpr auto Content = TagNeeds::Content;

ApplicationTag const Rows[] = {
    {"file", TAGDATA_FILENAME, FileGroup, "The file, with its whole path", "/home/ana/Textures/wood.jpg", None,
     [](Context const& c, Value& v) { v.SetFilename(c.facts->path); }},
    {"name", TAGDATA_FILENAME, FileGroup, "The file, seen from the folder that was asked for", "Textures/wood.jpg",
     None, [](Context const& c, Value& v) { v.SetFilename(fileFromNativeName(c.facts->name.c_str())); }},
    {"size", TAGDATA_FILESIZE, FileGroup, "Size in handy units", "1.40 MB", None,
     [](Context const& c, Value& v) {
         if (c.facts->sizeBytes <= std::numeric_limits<unsigned int>::max()) {
             v.SetFileSize(static_cast<unsigned int>(c.facts->sizeBytes));
         } else { // only the parameter has more bits
             v.SetFilename(c.facts->path);
             v.HandleParametersAndConvertToType(TAGDATA_NONE, u"(size)");
         }
     }},
    {"bytes", TAGDATA_TEXT, FileGroup, "Size in bytes", "1468007", None,
     [](Context const& c, Value& v) { Put(v, fmt::to_string(c.facts->sizeBytes)); }},
    {"written", TAGDATA_DATE, FileGroup, "Date and time of the last change", "02/09/2003 22:05", None,
     [](Context const& c, Value& v) { v.SetDate(c.facts->lastWrite); }},
    {"year", TAGDATA_TEXT, FileGroup, "Year of the last change", "2003", None, DatePart<&CXTime::GetYear>},
    {"month", TAGDATA_TEXT, FileGroup, "Month of the last change", "09", None, DatePart<&CXTime::GetMonth, 1>},
    {"day", TAGDATA_TEXT, FileGroup, "Day of the last change", "02", None, DatePart<&CXTime::GetDay>},
    {"hour", TAGDATA_TEXT, FileGroup, "Hour of the last change", "22", None, DatePart<&CXTime::GetHour>},
    {"minute", TAGDATA_TEXT, FileGroup, "Minute of the last change", "05", None, DatePart<&CXTime::GetMinute>},
    {"second", TAGDATA_TEXT, FileGroup, "Second of the last change", "59", None, DatePart<&CXTime::GetSecond>},
    {"index", TAGDATA_UINT, FileGroup, "Number of the file, from 1", "7", None,
     [](Context const& c, Value& v) { Put(v, c.index); }},
    {"counter", TAGDATA_TEXT, FileGroup, "Number of the file with zeros in front", "0007", None,
     [](Context const& c, Value& v) { Put(v, fmt::format("{:0{}}", c.index, c.counterDigits)); }},

    {"class", TAGDATA_TEXT, TypeGroup, "Class of the type, up to four characters", "JPEG", None,
     [](Context const& c, Value& v) { PutCode(v, c.facts->classCode); }},
    {"kind", TAGDATA_TEXT, TypeGroup, "Kind of data", "bitmap", None, FileFact<&FileFacts::kind>},
    {"description", TAGDATA_TEXT, TypeGroup, "Description of the type", "JPG - JPEG images", None,
     FileFact<&FileFacts::description>},
    {"parsers", TAGDATA_UINT, TypeGroup, "Number of parsers that claim the type", "1", None,
     FileFact<&FileFacts::parsers>},
    {"loadable", TAGDATA_BOOL, TypeGroup, "Whether it can be loaded", "True", None,
     [](Context const& c, Value& v) { v.SetBool(c.facts->loadable); }},
    {"savable", TAGDATA_BOOL, TypeGroup, "Whether it can be saved", "True", None,
     [](Context const& c, Value& v) { v.SetBool(c.facts->savable); }},

    {"width", TAGDATA_UINT, ImageGroup, "Pixels across", "640", Content, ImageFact<&MediaFacts::width>},
    {"height", TAGDATA_UINT, ImageGroup, "Pixels down", "480", Content, ImageFact<&MediaFacts::height>},
    {"depth", TAGDATA_UINT, ImageGroup, "Slices of a volume; 1 for a flat picture", "1", Content,
     ImageFact<&MediaFacts::depth>},
    {"channels", TAGDATA_UINT, ImageGroup, "Number of channels", "4", Content,
     [](Context const& c, Value& v) {
         if (auto const* const image = Image(c)) {
             Put(v, image->channels.size());
         }
     }},
    {"channelnames", TAGDATA_STRINGS, ImageGroup, "Names of the channels", "R ; G ; B ; A ; ", Content,
     ImageFact<&MediaFacts::channels>},
    {"pixeltype", TAGDATA_TEXT, ImageGroup, "What a channel of a pixel is stored as", "uint8", Content,
     ImageFact<&MediaFacts::pixelType>},
    {"colorspace", TAGDATA_TEXT, ImageGroup, "Colour space", "sRGB", Content, ImageFact<&MediaFacts::colorSpace>},
    {"subimages", TAGDATA_UINT, ImageGroup, "Number of subimages: layers, pages, frames", "1", Content,
     ImageFact<&MediaFacts::subImages>},

    {"vertices", TAGDATA_UINT, SceneGroup, "Number of vertices", "1560", Content, SceneCount<&SceneCounts::vertices>},
    {"faces", TAGDATA_UINT, SceneGroup, "Number of faces", "520", Content, SceneCount<&SceneCounts::faces>},
    {"materials", TAGDATA_UINT, SceneGroup, "Number of materials", "1", Content, SceneCount<&SceneCounts::materials>},
    {"animations", TAGDATA_UINT, SceneGroup, "Number of animations", "0", Content,
     SceneCount<&SceneCounts::animations>},
    {"boundingbox", TAGDATA_TEXT, SceneGroup, "Size of the bounding box", "1.2 x 1.77 x 1.2", Content,
     [](Context const& c, Value& v) {
         if (auto const* const scene = Scene(c); scene && !scene->box.IsEmpty()) {
             Put(v, BoxText(scene->box));
         }
     }},
    {"boxmin", TAGDATA_FLOATS, SceneGroup, "Lowest corner of the bounding box", "-0.600000; 0.000000; -0.600000; ",
     Content, BoxCorner<&SceneBox::lowest>},
    {"boxmax", TAGDATA_FLOATS, SceneGroup, "Highest corner of the bounding box", "0.600000; 1.770000; 0.600000; ",
     Content, BoxCorner<&SceneBox::highest>},
    {"missing", TAGDATA_STRINGS, SceneGroup, "Texture files that are not there", "oak.png ; ", Content,
     [](Context const& c, Value& v) {
         if (auto const* const scene = Scene(c)) {
             Put(v, scene->missingTextures);
         }
     }},

    {"content", TAGDATA_TEXT, ReadingGroup, "All that the list tells of the content", "640 x 480, RGB, uint8", Content,
     [](Context const& c, Value& v) {
         if (c.facts->media) {
             Put(v, c.facts->media->Text());
         }
     }},
    {"parser", TAGDATA_TEXT, ReadingGroup, "Parser that read the file", "JPEG", Content,
     [](Context const& c, Value& v) {
         if (auto const* const media = Media(c)) {
             PutCode(v, media->answer.parser);
         }
     }},
    {"firstchoice", TAGDATA_BOOL, ReadingGroup, "Whether that was the first one of the type", "True", Content,
     [](Context const& c, Value& v) {
         if (auto const* const media = Media(c)) {
             v.SetBool(media->answer.failures.empty());
         }
     }},
    {"error", TAGDATA_TEXT, ReadingGroup, "Why the file could not be read", "PNG: it is cut off", Content,
     [](Context const& c, Value& v) {
         if (c.facts->media && !Media(c)) {
             Put(v, c.facts->media->answer.Reasons());
         }
     }},

    {"meta:name", TAGDATA_TEXT, MetadataGroup, "A line of the metadata; any name behind the colon", "Canon",
     TagNeeds::Metadata, nullptr},
};

ApplicationTag const& MetadataRow = Rows[std::size(Rows) - 1];

int HexDigit(char16_t c) {
    return c >= u'0' && c <= u'9' ? c - u'0' : c >= u'a' && c <= u'f' ? c - u'a' + 10 : -1;
}

/// A tag's name is lowered already.
CXTString<char16_t> WithoutPercents(CXTString<char16_t> const& name) {
    CXTString<char16_t> plain;
    for (int i = 0; i < name.GetLength(); ++i) {
        int const high = name[i] == u'%' && i + 2 < name.GetLength() ? HexDigit(name[i + 1]) : -1;
        int const low = high > 0 && high < 8 ? HexDigit(name[i + 2]) : -1; // 01 to 7F
        plain += low < 0 ? name[i] : static_cast<char16_t>(high * 16 + low);
        i += low < 0 ? 0 : 2;
    }
    return plain;
}

} // namespace

CApplicationTags& CApplicationTags::Get() {
    static CApplicationTags tags;
    if (!tags.IsInit()) {
        tags.InitTags();
        SetApplicationTags(&tags);
    }
    return tags;
}

void CApplicationTags::InitTags() {
    if (IsInit()) {
        return;
    }
    CTags::InitTags();
    unsigned int id = 0;
    for (ApplicationTag const& row : Rows) {
        ++id;
        if (row.fill) {
            InsertTag(FromUtf8(std::string("<") + row.name + ">"), row.type | TAGFLAG_READONLY, FileClass, id,
                      row.friendly, CTagInfo::NoClassName, nullptr, nullptr);
        }
    }
    AddMetadataTag(u"name");
}

void CApplicationTags::AddMetadataTag(CXTString<char16_t> const& name) {
    CXTString<char16_t> const tag = u"<meta:" + name + u">";
    if (!IsTagValid(tag)) {
        metadataNames.push_back(WithoutPercents(name));
        InsertTag(tag, MetadataRow.type | TAGFLAG_READONLY, MetadataClass,
                  static_cast<unsigned int>(metadataNames.size()), MetadataRow.friendly, CTagInfo::NoClassName, nullptr,
                  nullptr);
    }
}

ApplicationTag const* CApplicationTags::FindRow(CTagInfo const& info) {
    if (info.GetTagClass() == MetadataClass) {
        return &MetadataRow;
    }
    return info.GetTagClass() == FileClass ? &Rows[info.GetTagID() - 1] : nullptr;
}

std::span<ApplicationTag const> CApplicationTags::GetRows() {
    return Rows;
}

bool CApplicationTags::EvaluateTag(CTagContext const& context, CTagInfo const& info, CTagValue& value) {
    ApplicationTag const* const row = FindRow(info);
    if (!row) {
        return false;
    }
    auto const& file = static_cast<FileTagContext const&>(context);
    value.Init();
    if (row->fill) {
        row->fill(file, value);
    } else if (MediaFacts const* const media = Media(file)) {
        value.SetText(media->metadata.GetText(metadataNames[info.GetTagID() - 1]));
    }
    value.HandleParametersAndConvertToType(TAGDATA_NONE, info.GetParameters());
    std::string text;
    if (value.GetDataType() == TAGDATA_FILENAME) {
        text = static_cast<char const*>(fileGetNativeName(value.GetFilename()));
    } else if (value.HandleParametersAndConvertToType(TAGDATA_TEXT, CXTString<char16_t>())) {
        text = Utf8(value.GetText());
    }
    value.SetText(
        GuardText(file.style == ValueStyle::Exact ? text : ShownName(text, file.style == ValueStyle::Terminal)));
    return true;
}

char const* TypeWord(unsigned int type) {
    switch (type & TAGDATA_MASK) {
    case TAGDATA_TEXT: return "text";
    case TAGDATA_UINT:
    case TAGDATA_INT: return "number";
    case TAGDATA_FLOAT: return "float";
    case TAGDATA_DATE: return "date";
    case TAGDATA_STRINGS: return "texts";
    case TAGDATA_FLOATS: return "floats";
    case TAGDATA_FILENAME: return "file name";
    case TAGDATA_BOOL: return "yes or no";
    case TAGDATA_FILESIZE: return "file size";
    default: return "none";
    }
}

} // namespace zel
