#include "htx/picture_wizard/steps.h"

#include <algorithm>

namespace quill::htx {
namespace {

void show_letters(HtxWiz& w) {
    w.Label12.text = std::to_string(w.style.size);
    w.larger.enabled = w.style.size < letter_sizes.back();
    w.smaller.enabled = w.style.size > letter_sizes.front();
    w.bold.caption = w.style.bold ? "Make the letters not bold" : "Make the letters bold";
    w.italic.caption = w.style.italic ? "Make the letters not italicized" : "Make the letters italicized";
}

/// Moves `by` steps along the ladder of sizes, stopping at its ends.
void resize_letters(HtxWiz& w, std::ptrdiff_t by) {
    const auto at = std::find(letter_sizes.begin(), letter_sizes.end(), w.style.size) - letter_sizes.begin();
    const auto last = static_cast<std::ptrdiff_t>(letter_sizes.size()) - 1;
    w.style.size = letter_sizes.at(static_cast<std::size_t>(std::clamp<std::ptrdiff_t>(at + by, 0, last)));
    show_letters(w);
}

void choose(HtxWiz& w, controls::Colour& colour) {
    const std::optional<controls::Colour> chosen = w.context.platform.choose_colour(colour);
    if (!chosen) return;
    colour = *chosen;
    w.style.has_colours = true;
}

}  // namespace

void enter_letters(HtxWiz& w) {
    show_step(w, WizardStep::letters);
    w.Command4.enabled = true;
    show_letters(w);
}

void wire_letters(HtxWiz& w) {
    w.larger.click = [&w] { resize_letters(w, 1); };
    w.smaller.click = [&w] { resize_letters(w, -1); };
    w.bold.click = [&w] {
        w.style.bold = !w.style.bold;
        show_letters(w);
    };
    w.italic.click = [&w] {
        w.style.italic = !w.style.italic;
        show_letters(w);
    };
    w.background.click = [&w] { choose(w, w.style.background); };
    w.foreground.click = [&w] { choose(w, w.style.foreground); };
    w.reset_letters.click = [&w] {
        w.style = {.has_colours = w.style.has_colours};
        show_letters(w);
    };
}

}  // namespace quill::htx
