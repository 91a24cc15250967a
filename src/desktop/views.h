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

/// The views of the windows that are loaded.
class Views {
  public:
    Views(controls::Windows& windows, EventLoop& events);
    ~Views();

    /// Has windows of type W drawn by views of type V, which get `shared` too; it must outlive them.
    template <class W, class V, class... Shared>
    void add(Shared&... shared) {
        makers_[typeid(W)] = [this, &shared...](controls::Window& window) -> std::unique_ptr<View> {
            return std::make_unique<V>(static_cast<W&>(window), events_, shared...);
        };
    }

    /// Destroys all views; their windows are not drawn again.
    void close_all();

    /// Makes the views of new windows, takes those of unloaded ones off the screen, draws what has changed in all.
    void sync_all();

    /// Draws what has changed in `window`.
    void sync(controls::Window& window);

    /// The view of `window`, or nullptr.
    View* view_of(const controls::Window& window) const;

  private:
    using Maker = std::function<std::unique_ptr<View>(controls::Window&)>;

    void remove_unloaded();
    void make_missing();
    /// Destroys views and windows that are gone, once nothing runs in them.
    void collect();

    controls::Windows& windows_;
    EventLoop& events_;
    QObject alive_;  ///< what is to be done later is dropped with it
    std::map<std::type_index, Maker> makers_;
    std::vector<std::unique_ptr<View>> views_;
    std::vector<std::unique_ptr<View>> retired_;
    bool syncing_ = false;
    bool sync_again_ = false;  ///< drawing has set off another event
    bool collects_soon_ = false;
};

}  // namespace quill::desktop
