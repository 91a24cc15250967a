#include "shell/star_field.h"

namespace quill::shell {
namespace {

// Twips on the start panel.
constexpr int centre_x = 3702;
constexpr int centre_y = 1822;
constexpr int right_end = 8810;
constexpr int lower_end = 7921;
constexpr int new_star_width = 7900;
constexpr int new_star_height = 3600;

constexpr int slowness = 30;  // a step is this fraction of the distance from the centre

bool has_left(const Star& star) {
    return star.x < 0 || star.y < 0 || star.x > right_end || star.y >= lower_end;
}

/// Returns the star after one step, or a new one.
Star moved(const Star& star, platform::Machine& machine) {
    const int dx = (star.x - centre_x) / slowness;
    const int dy = (star.y - centre_y) / slowness;
    const Star next{star.x + dx, star.y + dy};
    if (dx != 0 && dy != 0 && !has_left(next)) return next;
    return {machine.random(new_star_width) + 1, machine.random(new_star_height) + 1};
}

}  // namespace

void StarField::tick(platform::Machine& machine) {
    for (Star& star : stars_) {
        star = moved(star, machine);
        star.drawn = !is_black || is_black(star.x, star.y);
    }
}

}  // namespace quill::shell
