// SPDX-License-Identifier: MIT
// The menu from which a user picks a tag and its parameters. What it offers is worked out here, line by line; the
// desktop only shows it.
#include "zeltools/foundation/xload_string.h"
#include "zeltools/tags/tags.h"
#include "zeltools/tags/tags_menu_private.h"
#include "zeltools/ui/custom_menu.h"
#include "zeltools/ui/desktop.h"
#include "zeltools/ui/menu_listener.h"

namespace {

constexpr unsigned int TextAllTags = 5334;
constexpr unsigned int TextAllWritableTags = 5335;
constexpr unsigned int TextNoCriteria = 5341;

/// What a caller of DoPopupMenu wants to see.
struct TagMenuChoice {
    unsigned int flags;
    CHashTable<unsigned int> const* includedClasses;
    CHashTable<unsigned int> const* excludedClasses;
    CHashTable<unsigned int> const* excludedTypes;

    bool WritableOnly() const { return (flags & TagMenuWritableOnly) != 0; }
    bool ExcludesType(unsigned int type) const { return excludedTypes && excludedTypes->IsFound(type); }
    /// Whether the flags of a tag or of a parameter take it out of the menu.
    bool ExcludesFlags(unsigned int word) const { return WritableOnly() && (word & TAGFLAG_READONLY) != 0; }
    /// Whether those flags keep its own parameters out.
    bool ExcludesParameters(unsigned int word) const {
        return (word & TAGFLAG_NOSUBMENU) != 0 || (WritableOnly() && (word & TAGFLAG_NOSUBMENU_WRITABLE) != 0);
    }
};

bool HasParameters(unsigned int type) {
    for (_TagParametersList const* row = GetTagParametersList(); row->name; ++row) {
        if (row->inputType == type) {
            return true;
        }
    }
    return false;
}

/// A tag's text with one more parameter, in the innermost brackets: `<picture(createdate)>` and `d` give
/// `<picture(createdate(d))>`.
CXTString<char16_t> WithParameter(CXTString<char16_t> text, char16_t const* parameter) {
    text.Remove(u'>');
    text.Remove(u')');
    text += u'(';
    text += parameter;
    int depth = 0;
    for (int i = 0; i < text.GetLength(); ++i) {
        depth += text[i] == u'(';
    }
    text += CXTString<char16_t>(u')', depth);
    text += u'>';
    return text;
}

/// The menu as it is built, and what each of its items yields.
class TagMenu {
public:
    /// @param createdSubMenus  Becomes true where the listeners are told of a submenu.
    TagMenu(TagMenuChoice const& wanted, bool& createdSubMenus) : choice(wanted), toldListeners(createdSubMenus) {}

    void AddTags(CTags const& tags);
    void AddFlagItems();

    CCustomMenu const& Root() const { return root; }

    /// What a chosen id yields; the pair of markers for that of `<tagifexist>`.
    CXTString<char16_t> ResultOf(unsigned int id) const {
        CXTString<char16_t> const* const found = results.Find(id);
        CXTString<char16_t> const result = found ? *found : CXTString<char16_t>();
        return found && id == openerId ? result + closer : result;
    }

private:
    void AddTag(CXTString<char16_t> const& name, CTagInfo const& info);
    void AddParameters(CCustomMenu& menu, CXTString<char16_t> const& text, unsigned int type);
    CCustomMenu& MenuOfClass(CXTString<char16_t> const& label);

    unsigned int AddItem(CCustomMenu& menu, int position, CXTString<char16_t> const& label,
                         CXTString<char16_t> const& result) {
        menu.InsertItem(position, nextId, label);
        results.Insert(nextId, result);
        return nextId++;
    }

    TagMenuChoice const choice;
    bool& toldListeners;
    CCustomMenu root;
    CHashMap<unsigned int, unsigned int, CXTString<char16_t>> results;
    CHashMap<CXTString<char16_t>, CXTString<char16_t> const&, CCustomMenu*> menusByClass;
    CXTString<char16_t> closer;
    unsigned int nextId = CustomMenuFirstId;
    unsigned int openerId = 0;
};

/// Tells the listeners, when the menu is gone, that the submenus are that they were told of.
struct Farewell {
    bool due = false;

    ~Farewell() {
        if (due) {
            detail::TellSubMenusGone();
        }
    }
};

void TagMenu::AddTags(CTags const& tags) {
    CXTString<char16_t> name;
    CTagInfo info;
    for (unsigned int position = tags.GetFirstTag(); position != 0xFFFFFFFF;) {
        tags.GetNextTag(position, name, info);
        AddTag(name, info);
    }
}

void TagMenu::AddTag(CXTString<char16_t> const& name, CTagInfo const& info) {
    unsigned int const flags = info.GetTagFlags();
    unsigned int const type = info.GetTagDataType();
    unsigned int const tagClass = info.GetTagClass();
    bool const hasParameters = HasParameters(type);
    if ((flags & TAGFLAG_HIDDEN) != 0 || (choice.includedClasses && !choice.includedClasses->IsFound(tagClass)) ||
        (choice.excludedClasses && choice.excludedClasses->IsFound(tagClass)) ||
        (!hasParameters && choice.ExcludesType(type)) || choice.ExcludesFlags(flags)) {
        return;
    }
    if (name == u"</tagifexist>") {
        closer = name; // it comes with its opener
        return;
    }
    CCustomMenu& menu = MenuOfClass(info.GetClassNameW());
    CXTString<char16_t> const label = info.GetTagFriendlyName();
    int const position = menu.GetSortPosition(label);
    if (hasParameters && !choice.ExcludesParameters(flags)) {
        AddParameters(menu.InsertSubMenu(position, label), name, type);
        return;
    }
    unsigned int const id = AddItem(menu, position, label, name);
    if (name == u"<tagifexist>") {
        openerId = id;
    }
}

/// Offers the parameters of a type, in the order of their table. The table has no circle, so this ends.
void TagMenu::AddParameters(CCustomMenu& menu, CXTString<char16_t> const& text, unsigned int type) {
    for (_TagParametersList const* row = GetTagParametersList(); row->name; ++row) {
        unsigned int const word = row->outputTypeAndFlags;
        unsigned int const outputType = word & TAGDATA_MASK;
        if (row->inputType != type || choice.ExcludesFlags(word) || choice.ExcludesType(outputType)) {
            continue;
        }
        CXTString<char16_t> const extended = WithParameter(text, row->name);
        CXTString<char16_t> label = xLoadString(row->friendlyId);
        if (!choice.ExcludesParameters(word) && HasParameters(outputType)) {
            AddParameters(menu.InsertSubMenu(-1, label), extended, outputType);
            continue;
        }
        if (row->exampleId != 0) {
            label += u' ';
            label += xLoadString(row->exampleId);
        }
        AddItem(menu, -1, label, extended);
    }
}

CCustomMenu& TagMenu::MenuOfClass(CXTString<char16_t> const& label) {
    if (CCustomMenu* const* const known = menusByClass.Find(label)) {
        return **known;
    }
    CCustomMenu& menu = detail::MenuOfClassLabel(root, label, toldListeners);
    menusByClass.Insert(label, &menu);
    return menu;
}

void TagMenu::AddFlagItems() {
    int position = 0;
    if ((choice.flags & TagMenuNoCriteria) != 0) {
        AddItem(root, position++, xLoadString(TextNoCriteria), u"");
    }
    if ((choice.flags & TagMenuAllTags) != 0) {
        AddItem(root, position++, xLoadString(TextAllTags), u"<alltags>");
    }
    if ((choice.flags & TagMenuAllWritableTags) != 0) {
        AddItem(root, position++, xLoadString(TextAllWritableTags), u"<allwritabletags>");
    }
}

} // namespace

CCustomMenu& detail::MenuOfClassLabel(CCustomMenu& root, CXTString<char16_t> const& label, bool& created) {
    CCustomMenu* menu = &root;
    for (int first = 0; first < label.GetLength();) {
        int const found = label.Find(u"//", first);
        int const end = found < 0 ? label.GetLength() : found;
        CXTString<char16_t> const piece = label.Mid(first, end - first);
        first = end + 2;
        if (piece.IsEmpty()) {
            continue;
        }
        CCustomMenu* subMenu = menu->FindSubMenu(piece);
        if (!subMenu) {
            subMenu = &menu->InsertSubMenu(menu->GetSortPosition(piece), piece);
            created = true;
            TellSubMenuCreated(subMenu);
        }
        menu = subMenu;
    }
    return *menu;
}

CXTString<char16_t> CTags::DoPopupMenu(CPoint const& point, unsigned int flags,
                                       CHashTable<unsigned int>* includedClasses,
                                       CHashTable<unsigned int>* excludedClasses,
                                       CHashTable<unsigned int>* excludedTypes, int* cancelled) {
    if (cancelled) {
        *cancelled = 0;
    }
    if (!IsInit()) {
        return CXTString<char16_t>();
    }
    Farewell farewell; // outlives the menu, however that goes
    TagMenu menu({flags, includedClasses, excludedClasses, excludedTypes}, farewell.due);
    menu.AddTags(*this);
    menu.AddFlagItems();
    unsigned int const chosen = GetDesktop().TrackPopupMenu(menu.Root(), point, nullptr);
    if (cancelled && chosen == 0) {
        *cancelled = 1;
    }
    return menu.ResultOf(chosen);
}
