// SPDX-License-Identifier: MIT
// The tags of an application, and the templates that are written with them. A tag is a named, typed piece of
// information; a template is a text in which `<name>` stands for its value.
//
//     class CCatalogueTags : public CTags {
//         void InitTags() override {
//             CTags::InitTags();
//             InsertTag(u"<picture>", TAGDATA_FILENAME, pictureClass, pictureId, "Picture", CTagInfo::NoClassName,
//                       &GivePicture, nullptr);
//         }
//         bool EvaluateTag(CTagContext const&, CTagInfo const& info, CTagValue& value) override {
//             return GetDataFromTag(info, value, TAGDATA_TEXT) != 0;
//         }
//     };
//
//     CXTString<char16_t> text(u"<picture(shortname)> in <picture(topdir)>");
//     tags.ProcessText(context, text);                                            // "wood in Textures"
//
// The grammar of a template, with all its corners, stands in docs/template-language.md.

#pragma once

#include "zeltools/foundation/api.h"
#include "zeltools/foundation/hash_map.h"
#include "zeltools/foundation/hash_table.h"
#include "zeltools/foundation/xpoint.h"
#include "zeltools/foundation/xstring.h"
#include "zeltools/process/xcritical_section.h"
#include "zeltools/tags/tag_data_types.h"
#include "zeltools/tags/tag_id.h"
#include "zeltools/tags/tag_info.h"
#include "zeltools/tags/tag_parameters.h"

class CCustomRichEditCtrl;
class CTagValue;
class _TagScanInfo;

/// Where ProcessText gives up. A value is read again from its first character, so that one which holds its own tag
/// would be expanded for ever; no template that anybody means comes near these numbers. A text that meets one stays as
/// it is at that moment, and a line goes to the log.
struct TagTextLimits {
    /// How often in a row one value may come out of another, and how often the unclosed tag or block at the end of a
    /// template is taken up again. Ten times a long list that a host unrolls one line at a time, and a hundredth of a
    /// second.
    unsigned int chain = 100'000;

    /// Tags that may be met inside values, all together: what a dozen tags can grow to that each hold ten of the next,
    /// in seconds of work. As many blocks may be open at once in rich text.
    unsigned int nested = 1u << 24;

    /// Characters by which tags that are met in values may make a text longer, 256 MiB: a value that doubles itself
    /// gets there before memory is short. What is taken up again at the end of a template stops after as many, too. The
    /// values of the template's own tags have an end and may be longer, up to what a text can hold.
    int length = 1 << 27;

    /// Calls of ProcessText inside each other on one thread, where EvaluateTag expands a template itself: a host whose
    /// template then leads to itself would run out of stack, of which a call takes two or three KiB.
    unsigned int depth = 256;
};

/// What a menu of tags offers; bits of the flags of CTags::DoPopupMenu.
enum TagMenuFlags : unsigned int {
    TagMenuWritableOnly = 0x1,    ///< Only tags that can be written.
    TagMenuNoCriteria = 0x2,      ///< An entry that yields an empty text.
    TagMenuAllTags = 0x4,         ///< An entry that yields "<alltags>".
    TagMenuAllWritableTags = 0x8, ///< An entry that yields "<allwritabletags>".
};

/// The tags that a host has registered. A host derives from it, inserts its tags in InitTags, and answers for them in
/// EvaluateTag.
///
/// A tag is looked up by its text, in which case does not count, or by class and id. An unknown tag gives an empty text
/// or 0 and is no error. Where a tag's text is asked for, it may carry parameters, as `<picture(ext)>`, unless said
/// otherwise.
///
/// Threads: scans and const calls from any thread once the tags are complete; so does ProcessText, where EvaluateTag
///          allows it. Who changes the tags has them to himself.
/// Errors:  CXMemoryException where memory runs out.
class ZEL_API CTags {
public:
    /// What an expansion is about. A host derives from it what its EvaluateTag needs to know; the library looks at the
    /// kind alone.
    class CTagContext {
    public:
        static constexpr unsigned int KindOfText = 1;

        /// ProcessText and UpdateRTFTags do nothing for a kind other than KindOfText.
        unsigned int kind = KindOfText;
    };

    /// A registry without tags, and without the two of the library until InitTags.
    CTags();
    /// Copies the tags. Scans stay with the thread's own registry: a copy starts without any.
    CTags(CTags const& other);
    CTags& operator=(CTags const& other);
    virtual ~CTags();

    /// Inserts `<tagifexist>` and `</tagifexist>`, and fills parametersMap where that is empty; nothing where there are
    /// tags already. A host's override calls this first.
    virtual void InitTags();

    /// Lets the user pick a tag and its parameters.
    ///
    /// @param point            Where the menu opens, in screen coordinates.
    /// @param flags            TagMenuFlags.
    /// @param includedClasses  Not null: only tags of these classes.
    /// @param excludedClasses  Not null: no tags of these classes.
    /// @param excludedTypes    Not null: no tags and parameters of these types; a type that parameters work on stays.
    /// @param cancelled        Not null: becomes 1 when the user chose nothing, else 0.
    /// @return what to put into the template; empty when nothing was chosen.
    virtual CXTString<char16_t> DoPopupMenu(CPoint const& point, unsigned int flags,
                                            CHashTable<unsigned int>* includedClasses,
                                            CHashTable<unsigned int>* excludedClasses,
                                            CHashTable<unsigned int>* excludedTypes, int* cancelled);

    /// Gives the text of a tag that was met in a template. It usually ends in GetDataFromTag with TAGDATA_TEXT.
    /// @param value  On true its text object holds the text. In ProcessText it is the same for all tags of a template
    ///               and comes as the tag before left it; in UpdateRTFTags each tag has its own, which comes empty.
    /// @return false to leave the tag in the template as it stands.
    virtual bool EvaluateTag(CTagContext const& context, CTagInfo const& info, CTagValue& value) = 0;

    // ---- The application's registry ----

    /// The application's registry. Before SetApplicationTags there is none: an assertion in debug builds, a registry
    /// without tags in release builds.
    /// Threads: any.
    static CTags& GetApplicationTags();

    /// Names the application's registry, which stays the host's; null changes nothing. A registry that is destroyed is
    /// the application's no more.
    /// Threads: any.
    static void SetApplicationTags(CTags* tags);

    // ---- The tags ----

    /// Whether there are tags.
    int IsInit() const { return !tagsByName.IsEmpty(); }

    /// The position of the first tag, 0xFFFFFFFF when there is none. The order is that of a hash table.
    unsigned int GetFirstTag() const { return tagsByName.GetFirst(); }

    /// Gives the tag at `position`, which moves on, to 0xFFFFFFFF after the last. There the outputs are untouched.
    void GetNextTag(unsigned int& position, CXTString<char16_t>& name, CTagInfo& info) const;

    /// Registers a tag.
    ///
    /// It takes the place of one with that name, and of one with these keys, each where it is looked up that way only:
    /// a class and id that are inserted under two names have two names.
    ///
    /// @param name          With its angle brackets; letters of ASCII are lowered.
    /// @param typeAndFlags  _TAGDATA_INFO and TAGFLAG_ bits.
    /// @param friendlyId    String resource of what a menu calls it.
    /// @param friendlyText  The same as a narrow text that stays the host's; null for none.
    /// @param classNameId   String resource of the class's label; CTagInfo::NoClassName for none.
    /// @param callback      Gives the value; null for none.
    /// @param data          For the callback.
    void InsertTag(CXTString<char16_t> const& name, unsigned int typeAndFlags, unsigned int tagClass, unsigned int id,
                   unsigned int friendlyId, unsigned int classNameId, TagCallback callback, void* data);
    void InsertTag(CXTString<char16_t> const& name, unsigned int typeAndFlags, unsigned int tagClass, unsigned int id,
                   char const* friendlyText, unsigned int classNameId, TagCallback callback, void* data);

    /// Removes a tag by its very name: in lower case, without parameters. Another name removes nothing.
    void RemoveTag(CXTString<char16_t> const& name);

    /// Removes every tag of a class, as a plug-in does with its own when it goes.
    void RemoveTagByClass(unsigned int tagClass);

    // ---- One tag ----

    /// The name under which class and id were inserted last.
    CXTString<char16_t> GetTagName(unsigned int tagClass, unsigned int id) const;

    CXTString<char16_t> GetTagFriendlyName(unsigned int tagClass, unsigned int id) const;

    /// What a menu calls the last parameter, or the tag where there is none or its name is not known.
    CXTString<char16_t> GetTagFriendlyName(CXTString<char16_t> const& tag) const;

    /// The type of the value after its parameters, which the last of them decides; where its name is not known, the
    /// tag's.
    _TAGDATA_INFO GetTagDataType(CXTString<char16_t> const& tag) const;

    /// Whether the last parameter, or likewise the tag, lacks TAGFLAG_READONLY; 0 for an unknown tag.
    int CanCompareTag(CXTString<char16_t> const& tag) const;

    /// Whether there is such a tag, whatever its parameters.
    int IsTagValid(CXTString<char16_t> const& tag) const;

    /// Copies the tag with its parameters out; untouched when there is none, and then the result is 0.
    int GetTagInfo(CXTString<char16_t> const& tag, CTagInfo& info) const;

    /// The id, and the class through the reference, which stays untouched for an unknown tag.
    unsigned int GetTagID(CXTString<char16_t> const& tag, unsigned int& tagClass) const;

    /// Type and flags in one word.
    unsigned int GetTagFlags(unsigned int tagClass, unsigned int id) const;

    /// Asks the tag's callback for its value, applies the parameters, and converts to `type`.
    /// @return 0 without a callback, and when that gives no value; else 1, even where the value does not convert to
    ///         `type` and is left in its own.
    int GetDataFromTag(CTagInfo const& info, CTagValue& value, _TAGDATA_INFO type);

    // ---- Text ----

    /// Parts a tag's text from its parameters.
    ///
    /// @param tag         In: as in a template. Out: in lower case (ASCII), without the parameters; blanks are dropped
    ///                    where there were parameters, and kept where there were none.
    /// @param parameters  Out: the chain with its outer brackets and without blanks.
    ///
    /// | In                        | Tag         | Parameters          |
    /// |---------------------------|-------------|---------------------|
    /// | `<NAME( ext )>`           | `<name>`    | `(ext)`             |
    /// | `<my tag>`                | `<my tag>`  |                     |
    /// | `<a b(createdate(d+h))>`  | `<ab>`      | `(createdate(d+h))` |
    void ExtractParam(CXTString<char16_t>& tag, CXTString<char16_t>& parameters) const;

    /// Expands a template in place: each known tag is replaced by its value, which is read again for tags, and a block
    /// from `<tagifexist>` to `</tagifexist>` goes where no tag inside gave any text. A block that stays keeps both
    /// markers.
    ///
    /// Time and memory are linear in the text and in all values. What would run for ever stops at the limits.
    void ProcessText(CTagContext const& context, CXTString<char16_t>& text);

    TagTextLimits const& GetTextLimits() const { return textLimits; }
    void SetTextLimits(TagTextLimits const& limits) { textLimits = limits; }

    /// Begins a scan of a template on the calling thread, in place of one that was under way.
    void StartScan(CXTString<char16_t> const& text);

    /// Goes on to the next known tag of the template.
    ///
    /// @param text  The text in front of the tag, unknown tags included, is appended.
    /// @param tag   Receives the tag with its parameters; it is empty when there is none.
    /// @return 1 for a tag; 0 at the end, and on a thread that began no scan.
    int Scan(CXTString<char16_t>& text, CTagInfo& tag);

    // ---- Rich text; a control belongs to the thread that owns its window ----

    /// Begins a scan of a control on the calling thread, in place of one that was under way.
    void StartRTFScan();

    /// Selects the next known tag of the control, and deals with the conditional blocks on the way.
    /// @return 1 for a tag; 0 at the end, and on a thread that began no scan.
    int RTFScan(CCustomRichEditCtrl& control, CTagInfo& tag);

    /// Replaces the selection, which RTFScan made, by a text.
    /// @return 0 on a thread that began no scan.
    int SetRTFTag(CCustomRichEditCtrl& control, CXTString<char16_t>& text);

    /// Expands all tags of a control and removes all markers: a block goes where any of its tags gave an empty text.
    /// Nothing is done where the control has no window. With `<x>` giving "b" and `<e>` an empty text:
    ///
    /// | Control                              | Becomes             |
    /// |--------------------------------------|---------------------|
    /// | `1<tagifexist>a<x></tagifexist>2`    | `1ab2`              |
    /// | `1<tagifexist>a<x><e></tagifexist>2` | `12`                |
    /// | `a < b <x>, <x>`                     | `a < b <x>, b`      |
    /// | `</tagifexist><x><x>`                | `</tagifexist><x>b` |
    ///
    /// A tag reaches back to any `<`, and behind a closer that closes nothing a character is passed over. A line in
    /// which a marker stood alone goes with it, and so do blank lines at the end of the control.
    ///
    /// What would run for ever stops at the limits: a value that holds its own tag, and a tag that EvaluateTag refuses
    /// again and again, since a refused tag is offered once more.
    void UpdateRTFTags(CTagContext const& context, CCustomRichEditCtrl& control);

    /// The parameters by name. Filled by the first InitTags of the process, and constant from then on.
    static CHashMap<CXTString<char16_t>, CXTString<char16_t> const&, _TagParametersList const*> parametersMap;

private:
    class TextExpansion;
    using NameMap = CHashMap<CXTString<char16_t>, CXTString<char16_t> const&, CTagInfo>;
    using IdMap = CHashMap<CTagID, CTagID const&, CTagInfo>;
    using ScanMap = CHashMap<unsigned long long, unsigned long long, _TagScanInfo*>;

    /// Completes what the two forms of InsertTag have begun, and puts it into both maps.
    void Insert(CTagInfo& info, CXTString<char16_t> const& name, unsigned int typeAndFlags, unsigned int classNameId,
                TagCallback callback, void* data);

    /// Finds the tag of a text with parameters, and parts the two: `tag` becomes the name alone.
    CTagInfo const* FindTag(CXTString<char16_t>& tag, CXTString<char16_t>& parameters) const;

    /// The last parameter of a chain, or null where there is none or its name is not known.
    static _TagParametersList const* LastParameter(CXTString<char16_t> const& parameters);

    /// The calling thread's scan; null when it began none.
    _TagScanInfo* FindScan();
    /// The calling thread's scan, made where there is none, at the beginning of an empty text.
    _TagScanInfo& BeginScan();
    void DeleteScans();

    /// A number that no registry of the process had before.
    static unsigned long long NewState();

    NameMap tagsByName;
    IdMap tagsById;
    ScanMap scansByThread; ///< owned; guarded by scanSection, while a scan itself is its thread's alone
    CXCriticalSection scanSection;
    TagTextLimits textLimits;
    unsigned long long state = NewState(); ///< changes with the tags
};
