// SPDX-License-Identifier: MIT
// Which files get which names, and in what order, so that no name is taken before it is free.
//
//     a -> b, b -> c           b first: its name is free then
//     a -> b, b -> a           a swap: one of the two waits under a name of its own
//     a -> c, b -> c           neither
//     a -> b                   not while b stays
//
// Nothing here touches the disk but to look.

#pragma once

#include <string>
#include <vector>

namespace zel {

enum class RenameState {
    Planned,   ///< Can be done.
    Unchanged, ///< Has that name already.
    Refused,   ///< Cannot be done, which was known before.
    Renamed,   ///< Done.
    Failed,    ///< The system refused.
    NotDone,   ///< Interrupted before it.
};

/// One file.
struct RenameItem {
    std::string folder; ///< Native name from the root on, ending in a slash.
    std::string from;   ///< Its name there.
    std::string to;     ///< The new one; with slashes where it goes into folders below.
    std::string shown;  ///< What a message calls the file.
    RenameState state = RenameState::Planned;
    std::string reason; ///< Why it is Refused or Failed.

    std::string Source() const { return folder + from; }
    std::string Target() const { return folder + to; }
    void Refuse(std::string why);
};

/// What depends on each other: every file moves to the name that the one before it has left.
struct RenameChain {
    std::vector<std::size_t> items; ///< In the order of the work.
    bool isRing = false;            ///< The first one's new name is what the last one leaves.
};

struct RenamePlan {
    std::vector<RenameItem> items;
    std::vector<RenameChain> chains; ///< Of the planned items, each once.
};

/// Refuses what cannot be done and orders the rest.
/// @param folders  Whether slashes in a new name lead into folders.
RenamePlan PlanRenames(std::vector<RenameItem> items, bool folders);

/// Why a file cannot have a name; empty when it can.
/// @param folder   Where the file is.
std::string NameFault(std::string const& folder, std::string const& name, bool folders);

} // namespace zel
