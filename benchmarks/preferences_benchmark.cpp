// SPDX-License-Identifier: MIT
// Ten records of settings, each saved so that it is on the disk before the next, beside QSettings with a sync each.
#include "zeltools/persistence/custom_data.h"
#include "zeltools/platform/native_path.h"

#include <QSettings>
#include <benchmark/benchmark.h>
#include <cstdlib>
#include <filesystem>
#include <string>

namespace {

constexpr unsigned int Records = 10;

/// A folder on the disk that programs work on, not one in memory, where a flush costs nothing.
class Folder {
public:
    Folder() {
        std::string name = std::filesystem::current_path() / "zel-bench-XXXXXX";
        native = mkdtemp(name.data()) + std::string("/");
    }
    ~Folder() { std::filesystem::remove_all(native); }

    std::string native;
};

void Save_Zel(benchmark::State& state) {
    Folder const folder;
    CXTString<char16_t> const path = platform::FromNativePath(folder.native + "a.prefs").c_str();
    int round = 0;
    for (auto _ : state) {
        ++round;
        for (unsigned int record = 0; record < Records; ++record) {
            CCustomData data;
            data.SetInt(1, round);
            data.SetDouble(2, 0.5);
            data.SetString(3, u"C:\\textures\\wood.png");
            data.SetBool(4, 1);
            if (!data.SaveToPrefs(path, 7, record)) {
                state.SkipWithError("not saved");
            }
        }
    }
    CCustomData read;
    int value = 0;
    if (!read.LoadFromPrefs(path, 7, Records - 1, false) || !read.GetInt(1, value) || value != round) {
        state.SkipWithError("not the value that was saved");
    }
    state.SetItemsProcessed(static_cast<int64_t>(state.iterations()) * Records);
}

void Save_QSettings(benchmark::State& state) {
    Folder const folder;
    QSettings settings(QString::fromStdString(folder.native + "a.ini"), QSettings::IniFormat);
    int round = 0;
    for (auto _ : state) {
        ++round;
        for (unsigned int record = 0; record < Records; ++record) {
            settings.beginGroup(QString::number(record));
            settings.setValue("count", round);
            settings.setValue("share", 0.5);
            settings.setValue("path", QStringLiteral("C:\\textures\\wood.png"));
            settings.setValue("on", true);
            settings.endGroup();
            settings.sync();
        }
    }
    if (settings.status() != QSettings::NoError || settings.value("9/count").toInt() != round) {
        state.SkipWithError("not the value that was saved");
    }
    state.SetItemsProcessed(static_cast<int64_t>(state.iterations()) * Records);
}

BENCHMARK(Save_Zel)->Name("SaveTenRecords/zel")->UseRealTime();
BENCHMARK(Save_QSettings)->Name("SaveTenRecords/QSettings")->UseRealTime();

} // namespace
