#include "htx/picture_wizard/steps.h"
#include "text/ascii.h"

#include <charconv>

namespace quill::htx {
namespace {

constexpr auto no_title =
    "You must type a Title for this page below before going on to the next picture. You might wish to type a caption "
    "for it too but that is up to you and whether or not you wish to do so but titles are neccessary.";
constexpr auto about_titles =
    "The title of a page is shown in the title bar of the book's window, and the titles of all pages make the book's "
    "contents. A title is proposed from the picture's own description or its file name.";
constexpr auto about_captions =
    "A caption is shown above or below the picture. You need not type one; it can be as long as you like.";
constexpr auto about_sizes =
    "The picture is shown small here to make room for the words. In the book it has its own size: nothing in its file "
    "is changed.";

std::size_t picture_shown(const HtxWiz& w) {
    std::size_t number = 0;
    std::from_chars(w.Label8.text.data(), w.Label8.text.data() + w.Label8.text.size(), number);
    return number;
}

bool is_last(const HtxWiz& w) {
    return picture_shown(w) + 1 >= w.List1.count();
}

/// Enables the ways forward only for a page with a title.
void show_ways_on(HtxWiz& w) {
    w.next_picture.visible = w.List1.count() > 1;
    w.next_picture.enabled = !is_last(w);
    w.Command4.enabled = is_last(w) && !w.Text2.text.empty();
}

void show_picture(HtxWiz& w, std::size_t number) {
    const std::string path = number < w.List1.count() ? w.List1.items()[number] : std::string();
    w.Label8.text = std::to_string(number);
    w.Label6.text = "Picture " + std::to_string(number + 1) + " of " + std::to_string(w.List1.count());
    w.shown_picture = path;
    const auto known = w.words.find(path);
    w.Text2.text = known == w.words.end() ? proposed_title(path) : known->second.title;
    w.Text3.text = known == w.words.end() ? std::string() : known->second.caption;
    if (known != w.words.end()) {
        w.Option1(0).chosen = known->second.caption_above;
        w.Option1(1).chosen = !known->second.caption_above;
    }
    show_ways_on(w);
}

/// Records the texts of the current picture; returns false if it has no title.
bool record(HtxWiz& w) {
    if (text::trim(w.Text2.text).empty()) {
        w.context.platform.message(no_title);
        return false;
    }
    const bool above = w.Option1(0).chosen;
    const std::string& path = w.shown_picture;
    w.List6.add((above ? "1" : "0") + w.Text2.text);
    w.captions.push_back(w.Text3.text);
    w.words[path] = {path, w.Text2.text, w.Text3.text, above};
    return true;
}

}  // namespace

void enter_titles(HtxWiz& w) {
    show_step(w, WizardStep::titles);
    w.List6.clear();
    w.captions.clear();
    show_picture(w, 0);
}

bool record_last_picture(HtxWiz& w) {
    return record(w);
}

void wire_titles(HtxWiz& w) {
    w.Text2.change = [&w] { show_ways_on(w); };
    w.next_picture.click = [&w] {
        if (!is_last(w) && record(w)) show_picture(w, picture_shown(w) + 1);
    };
    w.why_titles.click = [&w] {
        w.context.platform.message(about_titles);
        w.context.platform.message(about_captions);
    };
    w.why_small.click = [&w] { w.context.platform.message(about_sizes); };
}

}  // namespace quill::htx
