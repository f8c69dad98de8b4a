// SPDX-License-Identifier: MIT
// Scans: the caller is given each tag of a text in turn. The place of each thread is kept by its id.
#include "zeltools/platform/threads.h"
#include "zeltools/process/xsingle_lock.h"
#include "zeltools/tags/tag_scan_info_private.h"
#include "zeltools/tags/tags.h"

#include <memory>

_TagScanInfo* CTags::FindScan() {
    CXSingleLock const hold(&scanSection, true);
    _TagScanInfo* const* const scan = scansByThread.Find(platform::GetCurrentThreadId());
    return scan ? *scan : nullptr;
}

_TagScanInfo& CTags::BeginScan() {
    _TagScanInfo* scan = FindScan();
    if (!scan) {
        auto fresh = std::make_unique<_TagScanInfo>();
        CXSingleLock const hold(&scanSection, true);
        scansByThread.Insert(platform::GetCurrentThreadId(), fresh.get());
        scan = fresh.release();
    }
    scan->Clear();
    scan->text.Empty();
    scan->position = 0;
    scan->emptySeen = 0;
    return *scan;
}

void CTags::DeleteScans() {
    CXSingleLock const hold(&scanSection, true);
    for (unsigned int position = scansByThread.GetFirst(); position != ScanMap::NoPosition;)
        delete *scansByThread.GetNext(position);
    scansByThread.Clear();
}

void CTags::StartScan(CXTString<char16_t> const& text) {
    BeginScan().text = text;
}

void CTags::StartRTFScan() {
    BeginScan();
}

int CTags::Scan(CXTString<char16_t>& text, CTagInfo& tag) {
    _TagScanInfo* const scan = FindScan();
    if (!scan)
        return 0;
    tag.Clear();
    char16_t const* const templateText = scan->text;
    int const length = scan->text.GetLength();
    int const first = scan->position; // literal text that was not handed out yet begins here
    auto const handOut = [&](int end) {
        if (first < end)
            text.Append(templateText + first, static_cast<std::size_t>(end - first));
    };

    for (int at = first; at < length;) {
        int const opening = scan->text.Find(u'<', at);
        if (opening < 0 || opening + 1 >= length)
            break;
        int end = opening + 1;
        while (end < length && templateText[end] != u'<' && templateText[end] != u'>')
            ++end;
        if (end == length)
            break; // no closing bracket
        if (templateText[end] == u'<') {
            at = end; // what stood in front was no tag
            continue;
        }
        scan->name.Copy(templateText + opening, end + 1 - opening);
        if (CTagInfo const* const info = FindTag(scan->name, scan->parameters)) {
            tag = *info;
            tag.parameters = scan->parameters;
            handOut(opening);
            scan->position = end + 1;
            return 1;
        }
        at = end + 1;
    }
    handOut(length);
    scan->position = length; // so that nothing more is given
    return 0;
}
