// SPDX-License-Identifier: MIT
#include "zeltools/ui/menu_listener.h"

#include <algorithm>
#include <vector>

namespace {

std::vector<CMenuListener*>& Listeners() {
    static std::vector<CMenuListener*> listeners;
    return listeners;
}

} // namespace

void AddMenuListener(CMenuListener* listener) {
    std::vector<CMenuListener*>& listeners = Listeners();
    if (listener != nullptr && std::find(listeners.begin(), listeners.end(), listener) == listeners.end()) {
        listeners.push_back(listener);
    }
}

void RemoveMenuListener(CMenuListener* listener) {
    std::erase(Listeners(), listener);
}

namespace detail {

void TellSubMenuCreated(CCustomMenu* menu) {
    for (CMenuListener* const listener : Listeners()) {
        listener->OnSubMenuCreated(menu);
    }
}

void TellSubMenusGone() {
    for (CMenuListener* const listener : Listeners()) {
        listener->OnSubMenusGone();
    }
}

} // namespace detail
