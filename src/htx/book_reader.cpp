#include "htx/book_reader.h"

#include "files/directory.h"
#include "files/path.h"
#include "htx/book/book_geometry.h"
#include "htx/html/page_text.h"
#include "htx/spider/link_hunt.h"
#include "shell/about_box.h"
#include "shell/main_window.h"
#include "text/ascii.h"
#include "text/count.h"

#include <algorithm>
#include <charconv>
#include <string_view>
#include <utility>

namespace quill::htx {
namespace {

using Direction = platform::Browser::Direction;

constexpr int first_width = 9495, first_height = 6960;  // twips
constexpr int contents_width = 7000, contents_height = 5000;
constexpr std::size_t most_hits = 1000;
constexpr int usual_zoom = 100, zoom_step = 10;
constexpr auto open_another =
    "To open another HTX book close this window and select another file from the programs main window.";
constexpr auto sizing_caption = "Move & resize this window as you wish it to appear when opening it.";

void set_captions(Form7& w) {
    constexpr const char* turns[] = {"< Back", "First page", "< Previous", "Next >", "Last page"};
    w.Command3.for_each([&](int i, controls::Button& button) { button.caption = turns[i]; });
    w.Command4.caption = "Contents";
    w.Command5.caption = w.Command2.caption = w.hits_close.caption = "Close";
    w.Command1.caption = "Size this window as you wish it to look when it is opened";
    w.Frame1.caption = "Contents";
    w.Label3.text = "0";
    w.Label4.text = "Getting subject listings - Please wait";
    w.Label5.text = "Click on a page above to jump to it or click on close below to close this window";
    w.fil.caption = "&File";
    w.ope.caption = "&Open";
    w.prn.caption = "Print..";
    w.exi.caption = "E&xit";
    w.edi.caption = "&Edit";
    w.cpy.caption = "Copy selected";
    w.sel.caption = "Select all";
    w.pag.caption = "&Page";
    w.fst.caption = "&First page";
    w.prv.caption = "&Previous page";
    w.nxt.caption = "&Next page";
    w.lst.caption = "&Last page";
    w.goto_page.caption = "&Goto page...";
    w.forth.caption = "Forward";
    w.vie.caption = "&View";
    w.larger.caption = "&Larger letters";
    w.smaller.caption = "&Smaller letters";
    w.usual.caption = "&Usual size";
    w.sea.caption = "&Search";
    w.fnd.caption = "Find on page";
    w.fnb.caption = "Find in book";
    w.again.caption = "Find next";
    w.earlier.caption = "Find previous";
    w.hlp.caption = "&Help";
    w.gui.caption = "Help for Quillbright Pro 2012";
    w.abt.caption = "About Quillbright Pro 2012...";
}

/// Returns the page as UTF-8; empty if its file is gone.
std::string read_page(const std::string& path) {
    const Result<std::string> bytes = files::read_file(path);
    return bytes ? decode_page(*bytes) : std::string();
}

std::size_t count_of(std::string_view text, std::string_view key) {
    std::size_t count = 0;
    for (std::size_t at = 0; (at = text.find(key, at)) != text.npos; at += key.size()) ++count;
    return count;
}

}  // namespace

Form7::Form7(shell::Context& shared) : context(shared) {
    width = first_width;
    height = first_height;
    left = (context.platform.machine().screen_width() - width) / 2;
    top = (context.platform.machine().screen_height() - height) / 2;
    List1.visible = List2.visible = Label1.visible = Label3.visible = false;
    Frame2.visible = Frame1.visible = List3.visible = hits_panel.visible = false;
    again.enabled = earlier.enabled = false;
    set_captions(*this);
    wire();
}

void Form7::wire() {
    const auto turn = [this](controls::Button& button, controls::MenuItem& item, auto where) {
        button.click = item.click = [this, where] {
            if (const std::optional<std::size_t> target = where(page(), pages_.size())) go_to(*target);
        };
    };
    using Target = std::optional<std::size_t>;
    turn(Command3(1), fst, [](std::size_t, std::size_t n) { return n != 0 ? Target(0) : Target(); });
    turn(Command3(2), prv, [](std::size_t c, std::size_t) { return c != 0 ? Target(c - 1) : Target(); });
    turn(Command3(3), nxt, [](std::size_t c, std::size_t n) { return c + 1 < n ? Target(c + 1) : Target(); });
    turn(Command3(4), lst, [](std::size_t, std::size_t n) { return n != 0 ? Target(n - 1) : Target(); });
    const auto ask_browser = [this](auto&& what) {
        return [this, what] {
            if (browser_ != nullptr) what(*browser_);
        };
    };
    Command3(0).click = ask_browser([](platform::Browser& b) { b.go_back(); });
    forth.click = ask_browser([](platform::Browser& b) { b.go_forward(); });
    cpy.click = ask_browser([](platform::Browser& b) { b.copy(); });
    sel.click = ask_browser([](platform::Browser& b) { b.select_all(); });
    prn.click = ask_browser([](platform::Browser& b) { b.print(); });
    Command4.click = goto_page.click = [this] { show_contents(); };
    Command5.click = [this] { Frame2.visible = Frame1.visible = false; };
    for (controls::ListBox* const list : {&List3, &List4}) {
        list->change = [this, list] {
            if (list->selected) go_to(*list->selected);
            Frame2.visible = Frame1.visible = false;
        };
    }
    larger.click = [this] { zoom_by(1); };
    smaller.click = [this] { zoom_by(-1); };
    usual.click = [this] { set_zoom(usual_zoom); };
    ope.click = [this] { context.platform.message(open_another); };
    fnd.click = [this] { ask_on_page(); };
    fnb.click = [this] { find_in_book(); };
    again.click = [this] { go_on(Direction::forward); };
    earlier.click = [this] { go_on(Direction::backward); };
    hits.change = hits.double_click = [this] { show_hit(); };
    hits_close.click = [this] { hits_panel.visible = false; };
    gui.click = [this] { context.platform.opener().open_with_default(context.platform.machine().user_guide()); };
    abt.click = [this] { context.windows.load<shell::AboutBox>().visible = true; };
    close = exi.click = Command1.click = Command2.click = [this] { close_window(); };
}

void Form7::show_files(std::vector<File> unpacked) {
    files_ = std::move(unpacked);
    std::vector<std::string> addresses, paths;
    for (const File& file : files_) {
        addresses.push_back(file.address);
        paths.push_back(file.path);
        if (kind_of(file.address) == FileKind::page) pages_.push_back(file.address);
    }
    index_ = BookFiles(addresses);
    sort_as_pages(paths);
    sort_as_pages(pages_);
    List1.assign(paths);
    std::vector<std::string> page_paths;
    for (const std::string& address : pages_) page_paths.push_back(path_of({AddressKind::local, address, address, {}}));
    List2.assign(std::move(page_paths));
    Command1.visible = Command2.visible = false;
    Label2.text = "Page 1 of " + std::to_string(pages_.size());
    if (List2.count() != 0) Label1.text = List2.items().front();
    goes_on_ = left_at_.page < pages_.size();
    if (!pages_.empty()) navigate(pages_[goes_on_ ? left_at_.page : 0], {});
}

void Form7::remember_in(std::string memory, std::string book) {
    memory_ = std::move(memory);
    book_ = std::move(book);
    left_at_ = remembered_place(memory_, book_).value_or(BookPlace());
}

void Form7::remember() {
    if (memory_.empty() || browser_ == nullptr || pages_.empty()) return;
    left_at_.page = page();
    left_at_.place = browser_->place();
    remember_place(memory_, book_, left_at_);
}

void Form7::set_zoom(int percent) {
    left_at_.zoom = std::clamp(percent, least_zoom, most_zoom);
    larger.enabled = left_at_.zoom < most_zoom;
    smaller.enabled = left_at_.zoom > least_zoom;
    if (browser_ != nullptr) browser_->set_zoom(left_at_.zoom);
}

void Form7::zoom_by(int steps) {
    set_zoom(left_at_.zoom + steps * zoom_step);
}

void Form7::fit_to(const std::vector<ScreenArea>& screens) {
    const BookGeometry fitted = fit_to_screens(wanted, screens);
    width = static_cast<int>(fitted.width);
    height = static_cast<int>(fitted.height);
    top = static_cast<int>(fitted.top);
    left = static_cast<int>(fitted.left);
}

std::string Form7::path_of(const Address& address) const {
    const std::optional<std::size_t> file = index_.find(address);
    return file ? files_[*file].path : std::string();
}

std::size_t Form7::page() const {
    std::size_t number = 0;
    std::from_chars(Label3.text.data(), Label3.text.data() + Label3.text.size(), number);
    return number;
}

void Form7::attach(platform::Browser* browser) {
    browser_ = browser;
    if (browser_ != nullptr) set_zoom(left_at_.zoom);
    if (browser_ != nullptr && !wanted_.empty()) browser_->navigate(wanted_, wanted_fragment_);
}

void Form7::navigate(const std::string& address, const std::string& fragment) {
    wanted_ = address;
    wanted_fragment_ = fragment;
    if (browser_ != nullptr) browser_->navigate(address, fragment);
}

void Form7::go_to(std::size_t number) {
    if (number < pages_.size()) navigate(pages_[number], {});
}

void Form7::navigated(const std::string& address) {
    const auto found = std::find(pages_.begin(), pages_.end(), address);
    if (found != pages_.end()) Label3.text = std::to_string(found - pages_.begin());
    Label2.text = "Page " + std::to_string(page() + 1) + " of " + std::to_string(pages_.size());
    const bool goes_on = std::exchange(goes_on_, false) && page() == left_at_.page;
    if (goes_on && left_at_.place != 0 && browser_ != nullptr) browser_->go_to_place(left_at_.place);
    remember();
}

void Form7::titled(const std::string& title) {
    const bool is_reading = List1.count() != 0;
    if (is_reading && !title.empty()) caption = title;
}

void Form7::follow(const std::string& from, const std::string& address) {
    const Address target = resolve(from, address);
    if (const std::optional<std::size_t> file = index_.find(target)) {
        navigate(files_[*file].address, target.fragment);
        return;
    }
    const bool is_web = text::starts_with_ignoring_case(address, "http://") ||
                        text::starts_with_ignoring_case(address, "https://") ||
                        text::starts_with_ignoring_case(address, "mailto:");
    if (target.kind != AddressKind::elsewhere || !is_web) {
        context.platform.warn("This link leads to nothing in the book:\n\n" + address);
        return;
    }
    const bool yes = context.platform.ask({.text = "This link leads out of the book, to\n\n" + address +
                                                   "\n\nOpen it with the program for such addresses?",
                                           .title = "A link out of the book",
                                           .no_is_default = true,
                                           .question_mark = true});
    if (yes) context.platform.opener().start("xdg-open", {address}, {});
}

void Form7::show_contents() {
    width = std::max(width, contents_width + 100);
    height = std::max(height, contents_height + 500);
    List3.clear();
    List4.clear();
    List3.visible = false;
    Frame2.visible = Frame1.visible = true;
    context.platform.repaint(*this);
    std::vector<std::string> titles, names;
    for (const std::string& path : List2.items()) {
        titles.push_back("  " + contents_title(read_page(path)));
        names.push_back(files::name_of(path));
    }
    List3.assign(std::move(titles));
    List4.assign(std::move(names));
    List3.visible = true;
}

void Form7::ask_on_page() {
    if (browser_ == nullptr) return;
    const std::string text =
        context.platform.input({.text = "Find on this page:", .title = "Find on page", .default_answer = searched_});
    if (text.empty()) return;
    searched_ = text;
    found_.clear();
    again.enabled = earlier.enabled = true;
    find_on_page(Direction::forward);
}

void Form7::find_on_page(Direction direction) {
    if (browser_ == nullptr || browser_->find(searched_, direction)) return;
    const std::string where = direction == Direction::forward ? "further down on" : "further up on";
    context.platform.message("\"" + searched_ + "\" is not " + where + " this page.");
}

std::vector<BookHit> Form7::hits_on(std::size_t number) const {
    std::vector<BookHit> found;
    const std::string key = text::to_lower(searched_);
    std::size_t place = 0;
    for (std::string& line : lines_of_page(read_page(List2.items()[number]))) {
        const std::size_t occurrences = count_of(text::to_lower(line), key);
        if (occurrences != 0) found.push_back({number, std::move(line), place});
        place += occurrences;
    }
    return found;
}

void Form7::find_in_book() {
    const std::string text =
        context.platform.input({.text = "Find in all pages:", .title = "Find in book", .default_answer = searched_});
    if (text.empty()) return;
    searched_ = text;
    found_.clear();
    for (std::size_t number = 0; number < pages_.size() && found_.size() < most_hits; ++number) {
        for (BookHit& hit : hits_on(number)) found_.push_back(std::move(hit));
    }
    found_.resize(std::min(found_.size(), most_hits));
    std::vector<std::string> rows;
    for (const BookHit& hit : found_) rows.push_back("Page " + std::to_string(hit.page + 1) + ": " + hit.line);
    hits.assign(std::move(rows));
    hits.selected.reset();
    hits_found.text = text::counted(found_.size(), "line") + " with \"" + text + "\"";
    hits_panel.visible = again.enabled = earlier.enabled = !found_.empty();
    if (found_.empty()) {
        context.platform.message("\"" + text + "\" is on no page of this book.");
        return;
    }
    hits.selected = 0;
    show_hit();
}

void Form7::show_hit() {
    if (!hits.selected || *hits.selected >= found_.size()) return;
    const BookHit& hit = found_[*hits.selected];
    if (hit.page != page()) go_to(hit.page);
    if (browser_ != nullptr) browser_->find_place(searched_, hit.place);
}

void Form7::go_on(Direction direction) {
    if (found_.empty()) {
        find_on_page(direction);
        return;
    }
    const std::size_t step = direction == Direction::forward ? 1 : found_.size() - 1;
    hits.selected = (hits.selected.value_or(0) + step) % found_.size();
    show_hit();
}

void Form7::resized() {
    shell::Session& session = context.session;
    session.BookTop = static_cast<float>(top);
    session.BookLeft = static_cast<float>(left);
    session.BookWidth = static_cast<float>(width);
    session.BookHeight = static_cast<float>(height);
}

void Form7::close_window() {
    const bool was_reading = List1.count() != 0;
    remember();
    visible = false;
    auto& main = context.windows.load<shell::swit>();
    controls::run(closed);
    if (was_reading) {
        shell::show_idle_captions(main);
        main.apt(3).visible = main.opt(3).visible = false;
        main.Label3.text.clear();
        main.Label1.visible = false;
    }
    main.visible = true;
    context.windows.unload<Form7>();
}

void size_book_window(shell::Context& context, const std::string& page) {
    context.windows.unload<Form7>();
    auto& w = context.windows.load<Form7>(context);
    w.show_files({{files::name_of(page), page}});
    w.List1.clear();
    w.List2.clear();
    w.Command1.visible = w.Command2.visible = true;
    w.Command3(4).visible = w.Command4.visible = false;
    w.caption = sizing_caption;
    w.resized();
    w.visible = true;
}

}  // namespace quill::htx
