// SPDX-License-Identifier: MIT
#include "file_template.h"
#include "json_text.h"
#include "list_report.h"
#include "media_facts.h"
#include "utf8_text.h"

#include <fmt/format.h>
#include <nlohmann/json.hpp>
#include <vector>

namespace zel {

namespace {

using Json = nlohmann::ordered_json;

/// ISO 8601 in UTC, so that a program needs no time zone to compare.
std::string UtcText(CXTime const& time) {
    tm fields{};
    if (!time.GetUTCTm(&fields)) {
        return {};
    }
    return fmt::format("{:04}-{:02}-{:02}T{:02}:{:02}:{:02}Z", fields.tm_year + 1900, fields.tm_mon + 1, fields.tm_mday,
                       fields.tm_hour, fields.tm_min, fields.tm_sec);
}

class JsonReport : public ListReport {
public:
    explicit JsonReport(FileTemplate const* fileTemplate) : expansion(fileTemplate) { place.index = 0; }

    void AddRow(FileFacts const& facts) override {
        Json row;
        facts.AddTypeTo(row);
        row["size"] = facts.isFolder ? Json(nullptr) : Json(facts.sizeBytes);
        row["written"] = UtcText(facts.lastWrite);
        if (facts.media) {
            facts.media->AddTo(row);
        }
        if (expansion && !facts.isFolder) {
            ++place.index;
            SetName(row, "text", expansion->Expand(facts, place));
        }
        Write(std::string(any ? ",\n" : "{\"files\": [\n") + row.dump());
        any = true;
    }

    void AddFailure(std::string const& nativeName, std::string const& reason) override {
        Json failure;
        SetName(failure, "name", nativeName);
        failure["reason"] = ShownUtf8(reason); // with the name in it
        failures.push_back(std::move(failure));
    }

    bool Finish(ListTotals const& totals) override {
        Json kinds = Json::object();
        for (auto const& [kind, total] : totals.kinds) {
            kinds[kind] = {{"files", total.files}, {"size", total.sizeBytes}};
        }
        Write(std::string(any ? "\n" : "{\"files\": [") + "],\n\"failures\": " + failures.dump() +
              ",\n\"totals\": " + kinds.dump() + (totals.interrupted ? ",\n\"interrupted\": true" : "") + "}\n");
        return ListReport::Finish(totals);
    }

private:
    FileTemplate const* expansion; ///< Null for none.
    ExpansionPlace place;
    Json failures = Json::array();
    bool any = false;
};

} // namespace

std::unique_ptr<ListReport> MakeJsonReport(FileTemplate const* fileTemplate) {
    return std::make_unique<JsonReport>(fileTemplate);
}

} // namespace zel
