#include "htx/picture_wizard/steps.h"

#include <algorithm>
#include <charconv>
#include <numeric>
#include <utility>

namespace quill::htx {
namespace {

constexpr auto too_few =
    "You have not added enough files, both lists must contain the same number off files. You can select more than one "
    "at a time and drag and drop them to the other list.";
constexpr auto how_to_order =
    "To change the order, first click on \"Clear New Order list\". Then drag the names from the left list to the right "
    "one in the order that you wish. You can select several names and drag them at once, and drag a name up or down in "
    "the new order.";
constexpr auto how_to_drag =
    "To drag a name, press the mouse button on it and keep it down, move over the other list, and let the button go. "
    "Without a mouse, select names in the left list and press the button between the lists; in the right list, Alt "
    "with the arrow keys moves a name.";
constexpr auto about_thumbnails =
    "With separate thumbnails the album holds a small copy of each picture, so that scrolling through it is faster and "
    "takes less memory. Making the file takes longer.";

void show_order(HtxWiz& w, const std::vector<std::size_t>& order) {
    std::vector<std::string> names, places;
    for (const std::size_t place : order) {
        names.push_back(w.List3.items().at(place));
        places.push_back(std::to_string(place));
    }
    w.List4.assign(std::move(names));
    w.List5.assign(std::move(places));
}

void show_picture(HtxWiz& w, std::size_t place) {
    if (place < w.List1.count()) w.shown_picture = w.List1.items()[place];
}

}  // namespace

std::vector<std::size_t> order_of(const HtxWiz& w) {
    std::vector<std::size_t> order;
    for (const std::string& place : w.List5.items()) {
        std::size_t number = 0;
        std::from_chars(place.data(), place.data() + place.size(), number);
        order.push_back(number);
    }
    return order;
}

bool order_is_whole(const HtxWiz& w) {
    if (w.List4.count() == w.List3.count()) return true;
    w.context.platform.message(too_few);
    return false;
}

void HtxWiz::put_in_order(const std::vector<std::size_t>& rows) {
    std::vector<std::size_t> order = order_of(*this);
    for (const std::size_t row : rows) {
        const bool is_new = std::find(order.begin(), order.end(), row) == order.end();
        if (is_new && row < List3.count()) order.push_back(row);
    }
    show_order(*this, order);
}

void HtxWiz::move_in_order(std::size_t from, std::size_t to) {
    std::vector<std::size_t> order = order_of(*this);
    if (from >= order.size() || to >= order.size()) return;
    const std::size_t place = order[from];
    order.erase(order.begin() + static_cast<std::ptrdiff_t>(from));
    order.insert(order.begin() + static_cast<std::ptrdiff_t>(to), place);
    show_order(*this, order);
    List4.selected = to;
}

void enter_order(HtxWiz& w) {
    show_step(w, WizardStep::order);
    w.List3.assign(w.List2.items());
    std::vector<std::size_t> order(w.List3.count());
    std::iota(order.begin(), order.end(), std::size_t{0});
    show_order(w, order);
    const bool several = w.List3.count() > 1;
    w.List3.enabled = w.List4.enabled = w.clear_order.enabled = w.put.enabled = several;
    w.Command4.enabled = true;
    show_picture(w, 0);
    if (!several) w.context.platform.message("You can't change the order, there is only 1 picture");
}

void wire_order(HtxWiz& w) {
    w.clear_order.click = [&w] { show_order(w, {}); };
    w.put.click = [&w] { w.put_in_order(w.List3.chosen_rows()); };
    w.List3.change = [&w] {
        if (w.List3.selected) show_picture(w, *w.List3.selected);
    };
    w.List4.change = [&w] {
        const std::vector<std::size_t> order = order_of(w);
        if (w.List4.selected && *w.List4.selected < order.size()) show_picture(w, order[*w.List4.selected]);
    };
    w.how_to_order.click = [&w] {
        w.context.platform.message(how_to_order);
        w.context.platform.message(how_to_drag);
    };
    w.about_thumbnails.click = [&w] { w.context.platform.message(about_thumbnails); };
}

}  // namespace quill::htx
