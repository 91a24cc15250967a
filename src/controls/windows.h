#pragma once

#include "controls/control.h"

#include <algorithm>
#include <memory>
#include <typeindex>
#include <utility>
#include <vector>

namespace quill::controls {

/// The loaded windows: one of each type, or several of a type that supports it. Knows no window by name.
///
/// A window may unload itself from one of its own actions: it leaves the registry at once and is destroyed by
/// `collect`, which the event loop calls between events.
class Windows {
  public:
    /// Returns the window of type W; makes it from `args` if it is not loaded yet.
    template <class W, class... Args>
    W& load(Args&&... args) {
        if (W* window = loaded<W>()) return *window;
        return add<W>(std::forward<Args>(args)...);
    }

    /// Makes and returns another window of type W from `args`.
    template <class W, class... Args>
    W& add(Args&&... args) {
        auto made = std::make_unique<W>(std::forward<Args>(args)...);
        W& window = *made;
        entries_.push_back({typeid(W), std::move(made)});
        return window;
    }

    /// Returns the window of type W, or nullptr if it is not loaded.
    template <class W>
    W* loaded() {
        const auto entry = find(typeid(W));
        return entry == entries_.end() ? nullptr : static_cast<W*>(entry->window.get());
    }

    template <class W>
    void unload() {
        const auto entry = find(typeid(W));
        if (entry == entries_.end()) return;
        unloaded_.push_back(std::move(entry->window));
        entries_.erase(entry);
    }

    /// Unloads this window if it is loaded.
    void unload(const Window& window) {
        const auto entry = std::find_if(entries_.begin(), entries_.end(),
                                        [&](const Entry& each) { return each.window.get() == &window; });
        if (entry == entries_.end()) return;
        unloaded_.push_back(std::move(entry->window));
        entries_.erase(entry);
    }

    /// Destroys the windows unloaded since the last call. REQUIRES: no action of those windows is running.
    void collect() { unloaded_.clear(); }

    /// Unloads and destroys all windows. REQUIRES: none of their actions is running.
    void close_all() {
        for (Entry& entry : entries_) unloaded_.push_back(std::move(entry.window));
        entries_.clear();
        collect();
    }

    /// Calls f(type, window) for each loaded window, in the order of loading. `f` must not load or unload.
    template <class F>
    void for_each(F&& f) {
        for (Entry& entry : entries_) f(entry.type, *entry.window);
    }

  private:
    struct Entry {
        std::type_index type;
        std::unique_ptr<Window> window;
    };

    std::vector<Entry>::iterator find(std::type_index type) {
        return std::find_if(entries_.begin(), entries_.end(), [&](const Entry& entry) { return entry.type == type; });
    }

    std::vector<Entry> entries_;
    std::vector<std::unique_ptr<Window>> unloaded_;
};

}  // namespace quill::controls
