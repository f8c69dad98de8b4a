// SPDX-License-Identifier: MIT
#include "rename_plan.h"

#include <algorithm>
#include <climits>
#include <filesystem>
#include <fmt/format.h>
#include <string_view>
#include <unistd.h>
#include <unordered_map>

namespace zel {

namespace {

namespace fs = std::filesystem;

constexpr std::size_t Nobody = static_cast<std::size_t>(-1);

bool Exists(std::string const& path) {
    std::error_code error;
    return fs::exists(fs::symlink_status(path, error));
}

std::string ComponentFault(std::string_view component, std::size_t maxBytes) {
    if (component.empty()) {
        return "the new name is empty";
    }
    if (component == "." || component == "..") {
        return fmt::format("'{}' is no name", component);
    }
    if (component.size() > maxBytes) {
        return fmt::format("the new name has {} bytes, and {} are allowed", component.size(), maxBytes);
    }
    bool const hasControl =
        std::any_of(component.begin(), component.end(), [](char c) { return (c >= 0 && c < ' ') || c == 0x7F; });
    return hasControl ? "the new name holds a line break or another control character" : "";
}

class Planner {
public:
    Planner(std::vector<RenameItem>&& given, bool intoFolders) : folders(intoFolders) { plan.items = std::move(given); }

    RenamePlan Plan() {
        for (std::size_t i = 0; i < plan.items.size(); ++i) {
            bySource.emplace(plan.items[i].Source(), i);
        }
        RefuseBadNames();
        RefuseSharedNames();
        RefuseTakenNames();
        Order();
        return std::move(plan);
    }

private:
    template <class Do>
    void ForPlanned(Do const& work) {
        for (std::size_t i = 0; i < plan.items.size(); ++i) {
            if (plan.items[i].state == RenameState::Planned) {
                work(i, plan.items[i]);
            }
        }
    }

    void RefuseBadNames() {
        ForPlanned([&](std::size_t, RenameItem& item) {
            std::string fault = NameFault(item.folder, item.to, folders);
            if (!fault.empty()) {
                item.Refuse(std::move(fault));
            } else if (item.to == item.from) {
                item.state = RenameState::Unchanged;
            }
        });
    }

    void RefuseSharedNames() {
        std::unordered_map<std::string, std::vector<std::size_t>> byTarget;
        ForPlanned([&](std::size_t i, RenameItem const& item) { byTarget[item.Target()].push_back(i); });
        for (auto const& [target, wanting] : byTarget) {
            for (std::size_t k = 0; wanting.size() > 1 && k < wanting.size(); ++k) {
                RenameItem const& other = plan.items[wanting[k == 0 ? 1 : 0]];
                plan.items[wanting[k]].Refuse(
                    wanting.size() == 2
                        ? fmt::format("{} would get the same name", other.shown)
                        : fmt::format("{} and {} more would get the same name", other.shown, wanting.size() - 2));
            }
        }
    }

    /// A name is taken where a file has it that stays, which in turn may be for such a reason.
    void RefuseTakenNames() {
        std::unordered_map<std::size_t, std::size_t> wanting; // of a file's name
        std::vector<std::size_t> staying;
        ForPlanned([&](std::size_t i, RenameItem& item) {
            auto const holder = bySource.find(item.Target());
            if (holder == bySource.end()) {
                if (Exists(item.Target())) {
                    item.Refuse("there is a file of that name");
                }
            } else {
                wanting.emplace(holder->second, i);
            }
        });
        for (std::size_t i = 0; i < plan.items.size(); ++i) {
            if (plan.items[i].state != RenameState::Planned) {
                staying.push_back(i);
            }
        }
        while (!staying.empty()) {
            std::size_t const stays = staying.back();
            staying.pop_back();
            auto const next = wanting.find(stays);
            if (next != wanting.end() && plan.items[next->second].state == RenameState::Planned) {
                plan.items[next->second].Refuse(fmt::format("{} has that name and keeps it", plan.items[stays].shown));
                staying.push_back(next->second);
            }
        }
    }

    void Order() {
        std::vector<std::size_t> chainOf(plan.items.size(), Nobody);
        ForPlanned([&](std::size_t first, RenameItem const&) {
            if (chainOf[first] != Nobody) {
                return;
            }
            std::vector<std::size_t> found;
            std::size_t i = first;
            for (; i != Nobody && chainOf[i] == Nobody; i = HolderOfTarget(i)) {
                chainOf[i] = plan.chains.size();
                found.push_back(i);
            }
            bool const isRing = i == first;
            if (i == Nobody || isRing) {
                plan.chains.emplace_back().isRing = isRing;
            }
            // Otherwise the last one waits for an item whose chain is there.
            std::size_t const chain = i == Nobody ? plan.chains.size() - 1 : chainOf[i];
            for (std::size_t const item : found) {
                chainOf[item] = chain;
            }
            std::vector<std::size_t>& items = plan.chains[chain].items;
            items.insert(items.end(), found.rbegin(), found.rend());
        });
    }

    /// Who has the name that an item wants, and will leave it.
    std::size_t HolderOfTarget(std::size_t i) const {
        auto const holder = bySource.find(plan.items[i].Target());
        return holder == bySource.end() ? Nobody : holder->second;
    }

    RenamePlan plan;
    bool folders;
    std::unordered_map<std::string, std::size_t> bySource;
};

} // namespace

void RenameItem::Refuse(std::string why) {
    state = RenameState::Refused;
    reason = std::move(why);
}

std::string NameFault(std::string const& folder, std::string const& name, bool folders) {
    if (!folders && name.find('/') != std::string::npos) {
        return "the new name holds a slash; --folders takes it for a folder";
    }
    long const nameMax = pathconf(folder.c_str(), _PC_NAME_MAX);
    std::size_t const maxBytes = nameMax > 0 ? static_cast<std::size_t>(nameMax) : NAME_MAX;
    std::string path = folder;
    for (std::size_t begun = 0; begun <= name.size();) {
        std::size_t const end = std::min(name.find('/', begun), name.size());
        std::string_view const component = std::string_view(name).substr(begun, end - begun);
        std::string fault = ComponentFault(component, maxBytes);
        path += component;
        std::error_code unknown;
        if (fault.empty() && end != name.size() && Exists(path) && !fs::is_directory(path, unknown)) {
            fault = fmt::format("{} is no folder", component);
        }
        if (!fault.empty()) {
            return fault;
        }
        path += '/';
        begun = end + 1;
    }
    return path.size() > PATH_MAX ? "the new name with its folders is too long for the system" : "";
}

RenamePlan PlanRenames(std::vector<RenameItem> items, bool folders) {
    return Planner(std::move(items), folders).Plan();
}

} // namespace zel
