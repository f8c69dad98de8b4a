// SPDX-License-Identifier: MIT
#include "zeltools/files/display_options_private.h"
#include "zeltools/files/io_preferences_private.h"
#include "zeltools/foundation/application_preferences.h"
#include "zeltools/foundation/exit_callbacks.h"
#include "zeltools/foundation/four_cc.h"
#include "zeltools/persistence/custom_data.h"
#include "zeltools/process/xcritical_section.h"
#include "zeltools/process/xsingle_lock.h"

#include <atomic>
#include <cstdlib>

namespace detail {

namespace {

constexpr unsigned int SectionKey = FourCC("IOSE");
constexpr unsigned int SetKey = FourCC("GBPR");
constexpr unsigned int ValueId = FourCC("PREF");
constexpr unsigned int DisplayBits = 0xFFFF0000; ///< A file from elsewhere must not switch the log itself off.

/// Never destroyed, since it is used while the process ends.
struct DisplayOptions {
    CXCriticalSection lock; ///< Guards `isRead` and `path`; nothing is taken inside it.
    bool isRead = false;
    CXTString<char16_t> path; ///< Where the word came from: at the end of the process the folders are forgotten.
    std::atomic<unsigned int> word{0};
    std::atomic<unsigned int> stored{0}; ///< What the file holds; spares the writing of what has not changed.
};

DisplayOptions& Options() {
    static DisplayOptions& options = *new DisplayOptions;
    return options;
}

bool IsRead() {
    CXSingleLock const hold(&Options().lock, true);
    return Options().isRead;
}

void WriteDisplayOptions() {
    DisplayOptions& options = Options();
    unsigned int const word = options.word.load();
    if (word == options.stored.load() || !IsPreferencesSavingEnabled()) {
        return;
    }
    CXTString<char16_t> path;
    {
        CXSingleLock const hold(&options.lock, true);
        path = options.path;
    }
    CCustomData data;
    data.LoadFromPrefs(path, SectionKey, SetKey, false); // other values of the record stay
    data.SetUInt(ValueId, word);
    if (data.SaveToPrefs(path, SectionKey, SetKey)) {
        options.stored.store(word);
    }
}

} // namespace

void ReadDisplayOptions() {
    if (!IsRead()) {
        // Read without the lock, since asking for the folder takes the application lock. Two threads may both read;
        // the first one's answer counts.
        CXTString<char16_t> path;
        unsigned int word = 0;
        if (IsPreferencesSavingEnabled()) {
            path = GetIoPreferencesPath();
            CCustomData data;
            data.LoadFromPrefs(path, SectionKey, SetKey, true);
            data.GetUInt(ValueId, word, 0);
        }
        DisplayOptions& options = Options();
        CXSingleLock const hold(&options.lock, true);
        if (!options.isRead) {
            options.isRead = true;
            options.path = path;
            options.stored.store(word & DisplayBits);
            options.word.store(word & DisplayBits);
            std::atexit(&WriteDisplayOptions);
        }
    }
    // The close forgets its callbacks, so each operation registers; a second entry is ignored.
    AddApplicationExitCallback(&WriteDisplayOptions, 0);
}

unsigned int GetDisplayOptions() {
    return Options().word.load();
}

void SetDisplayOptions(unsigned int displayBits) {
    Options().word.store(displayBits & DisplayBits);
}

} // namespace detail
