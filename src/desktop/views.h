#pragma once

#include "controls/windows.h"
#include "desktop/event_loop.h"
#include "desktop/view.h"

#include <QObject>

#include <functional>
#include <map>
#include <memory>
#include <typeindex>
#include <vector>

namespace quill::desktop {

/// The views of the loaded windows.
class Views {
  public:
    Views(controls::Windows& windows, EventLoop& events);
    ~Views();

    /// Assigns views of type V to windows of type W; they also get `shared`, which must outlive them.
    template <class W, class V, class... Shared>
    void add(Shared&... shared) {
        makers_[typeid(W)] = [this, &shared...](controls::Window& window) -> std::unique_ptr<View> {
            return std::make_unique<V>(static_cast<W&>(window), events_, shared...);
        };
    }

    /// Destroys all views; their windows are no longer drawn.
    void close_all();

    /// Makes the views of new windows, removes those of unloaded ones from the screen, and draws all changes.
    void sync_all();

    /// Draws the changes in `window`.
    void sync(controls::Window& window);

    /// Returns the view of `window`, or nullptr.
    View* view_of(const controls::Window& window) const;

  private:
    using Maker = std::function<std::unique_ptr<View>(controls::Window&)>;

    void remove_unloaded();
    void make_missing();
    /// Destroys views and windows that are gone, once nothing is running in them.
    void collect();

    controls::Windows& windows_;
    EventLoop& events_;
    QObject alive_;  ///< pending later work is dropped with it
    std::map<std::type_index, Maker> makers_;
    std::vector<std::unique_ptr<View>> views_;
    std::vector<std::unique_ptr<View>> retired_;
    bool syncing_ = false;
    bool sync_again_ = false;  ///< drawing has caused another event
    bool collects_soon_ = false;
};

}  // namespace quill::desktop
