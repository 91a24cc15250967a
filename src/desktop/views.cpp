#include "desktop/views.h"

#include <QTimer>

#include <algorithm>
#include <utility>

namespace quill::desktop {

Views::Views(controls::Windows& windows, EventLoop& events) : windows_(windows), events_(events) {}

Views::~Views() = default;

void Views::sync_all() {
    if (std::exchange(syncing_, true)) {
        sync_again_ = true;
        return;
    }
    do {
        sync_again_ = false;
        remove_unloaded();
        make_missing();
        for (std::size_t i = 0; i < views_.size(); ++i) views_[i]->sync();
    } while (sync_again_);
    syncing_ = false;
    if (events_.idle() && !std::exchange(collects_soon_, true)) {
        QTimer::singleShot(0, &alive_, [this] { collect(); });
    }
}

void Views::close_all() {
    makers_.clear();
    retired_.clear();
    while (!views_.empty()) views_.pop_back();
}

void Views::make_missing() {
    windows_.for_each([&](std::type_index type, controls::Window& window) {
        const auto maker = makers_.find(type);
        if (maker != makers_.end() && view_of(window) == nullptr) views_.push_back(maker->second(window));
    });
}

void Views::sync(controls::Window& window) {
    make_missing();
    if (View* view = view_of(window)) view->sync();
}

View* Views::view_of(const controls::Window& window) const {
    for (const auto& view : views_) {
        if (&view->window() == &window) return view.get();
    }
    return nullptr;
}

void Views::remove_unloaded() {
    std::vector<const controls::Window*> loaded;
    windows_.for_each([&](std::type_index, controls::Window& window) { loaded.push_back(&window); });
    const auto gone = std::stable_partition(views_.begin(), views_.end(), [&](const auto& view) {
        return std::find(loaded.begin(), loaded.end(), &view->window()) != loaded.end();
    });
    for (auto view = gone; view != views_.end(); ++view) {
        (*view)->retire();
        retired_.push_back(std::move(*view));
    }
    views_.erase(gone, views_.end());
}

void Views::collect() {
    collects_soon_ = false;
    if (!events_.idle()) return;
    remove_unloaded();
    retired_.clear();
    windows_.collect();
}

}  // namespace quill::desktop
