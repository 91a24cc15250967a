#pragma once

#include "platform/platform.h"

#include <array>
#include <functional>

namespace quill::shell {

/// One star, in twips on the start panel.
struct Star {
    int x = 0, y = 0;
    bool drawn = false;  ///< a white line from (x, y) to (x, y + 15) is visible
};

/// Stars that fly apart from a point of the start panel; a view draws them behind its labels.
class StarField {
  public:
    static constexpr int count = 30;

    /// Returns true if the start panel is black at a point, so that a star is visible there. The view fills it in;
    /// empty means black everywhere.
    std::function<bool(int x, int y)> is_black;

    /// Moves all stars one step and replaces those that left or did not move.
    void tick(platform::Machine& machine);

    const std::array<Star, count>& stars() const { return stars_; }

  private:
    std::array<Star, count> stars_;
};

}  // namespace quill::shell
