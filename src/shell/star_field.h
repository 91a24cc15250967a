#pragma once

#include "platform/platform.h"

#include <array>
#include <functional>

namespace quill::shell {

/// One star, in twips on the start panel.
struct Star {
    int x = 0, y = 0;
    bool drawn = false;  ///< a white line from (x, y) to (x, y + 15) is to be seen
};

/// Stars that fly apart from a point of the start panel, as a view draws them behind its labels.
class StarField {
  public:
    static constexpr int count = 30;

    /// Whether the start panel is black at a point, so that a star may be seen there. The view fills it in; empty means
    /// that it is black everywhere.
    std::function<bool(int x, int y)> is_black;

    /// Moves all stars one step and puts new ones in the place of those that left or stood still.
    void tick(platform::Machine& machine);

    const std::array<Star, count>& stars() const { return stars_; }

  private:
    std::array<Star, count> stars_;
};

}  // namespace quill::shell
