#include "htx/spider/timmy.h"

#include "files/directory.h"
#include "files/mapped_file.h"
#include "files/path.h"
#include "htx/spider/link_hunt.h"
#include "shell/long_run.h"
#include "shell/main_window.h"
#include "text/ascii.h"
#include "text/count.h"
#include "text/reader.h"

#include <algorithm>
#include <array>
#include <string_view>
#include <unordered_set>
#include <vector>

namespace quill::htx {
namespace {

using encoder::cmdg;

constexpr std::string_view definitions =
    "A \"valid\" image or page is a file in the directory of the page that leads to it, or below that directory. Links "
    "to the web, and to files that are not there, are not valid.\n\nAdd valid images and Add valid pages put what the "
    "pages chosen last lead to on the list of files.\n\nSpyder hunt all links goes on from page to page and shows "
    "all valid pages and images that can be reached, without those that are chosen already. Add them with the two "
    "buttons.";

bool has(const controls::ListBox& list, const std::string& item) {
    return std::find(list.items().begin(), list.items().end(), item) != list.items().end();
}

bool is_image(std::string_view link) {
    constexpr std::array<std::string_view, 4> endings = {"peg", "jpg", "gif", "bmp"};
    const std::string end = text::to_lower(text::last(link, 3));
    return std::find(endings.begin(), endings.end(), end) != endings.end();
}

bool is_page(std::string_view link) {
    return kind_of(link) == FileKind::page;
}

void add_image(cmdg& w, const std::string& link) {
    if (!has(w.List3, link)) w.List3.add(link);
    w.Command3.enabled = true;
}

void add_page(cmdg& w, const std::string& link) {
    if (!has(w.List4, link)) w.List4.add(link);
    w.Command4.enabled = w.Command5.enabled = true;
}

/// Adds the links of a line in their plain form: " href=", "g src=" or "round=", a quote, and the text up to the next
/// quote.
void add_links_of_line(cmdg& w, std::string_view line) {
    constexpr std::size_t key_size = 6;
    const std::string lower = text::to_lower(line);
    for (std::size_t at = 0; at + key_size <= line.size(); ++at) {
        const std::string_view key = std::string_view(lower).substr(at, key_size);
        if (key != " href=" && key != "g src=" && key != "round=") continue;
        const std::string_view rest = line.substr(std::min(at + key_size + 1, line.size()));
        const std::string link(rest.substr(0, rest.find('"')));
        if (!is_image(link) && !is_page(link)) continue;
        if (!files::file_size(w.chosenDir + link)) continue;
        is_image(link) ? add_image(w, link) : add_page(w, link);
    }
}

/// Adds the links that only parsing the tags finds: those whose files are not listed under any spelling.
void add_links_of_tags(cmdg& w, const std::string& path) {
    SiteFiles site(files::dir_of(w.chosenDir + "x"));
    std::unordered_set<std::string> listed;
    for (const controls::ListBox* const list : {&w.List3, &w.List4}) {
        for (const std::string& item : list->items()) listed.insert(resolve("", item).written_path);
    }
    for (const std::string& file : files_named_in(site, path.substr(w.chosenDir.size()))) {
        if (!listed.insert(file).second) continue;
        is_page(file) ? add_page(w, file) : add_image(w, file);
    }
}

/// Adds the rows of `list` to the chosen files, and empties it.
void choose_all(shell::Context& context, cmdg& w, controls::ListBox& list) {
    auto& main = context.windows.load<shell::swit>();
    std::unordered_set<std::string> chosen(w.List2.items().begin(), w.List2.items().end());
    for (const std::string& link : list.items()) {
        if (!chosen.insert(link).second) continue;
        w.List2.add(link);
        main.List1.add(link);
        main.List2.add(w.chosenDir + link);
    }
    list.clear();
    main.Label12.text = std::to_string(main.List1.count()) + " files";
}

shell::RunPanel run_panel(cmdg& w) {
    return {w, w.doing, w.bar, w.bar_done, w.stop, w.stop_wanted};
}

/// Lists those of the files that are not chosen yet.
void show_found(cmdg& w, const std::vector<std::string>& found) {
    const std::unordered_set<std::string> chosen(w.List2.items().begin(), w.List2.items().end());
    std::vector<std::string> images, pages;
    for (const std::string& file : found) {
        if (!chosen.contains(file)) (is_page(file) ? pages : images).push_back(file);
    }
    w.Command3.enabled = !images.empty();
    w.Command4.enabled = !pages.empty();
    w.List3.assign(std::move(images));
    w.List4.assign(std::move(pages));
}

/// Hunts from the chosen pages and the valid pages, and lists files not chosen yet.
void hunt_all(shell::Context& context, cmdg& w) {
    SiteFiles site(files::dir_of(w.chosenDir + "x"));
    std::vector<std::string> start;
    for (const controls::ListBox* const list : {&w.List2, &w.List4}) {
        for (const std::string& item : list->items()) {
            if (is_page(item) && site.find(resolve("", item))) start.push_back(resolve("", item).written_path);
        }
    }
    shell::LongRun run(context.platform, run_panel(w), "Hunting links");
    const Hunt hunt = hunt_links(site, start, [&](std::size_t found) {
        run.now("Hunting links: " + text::counted(found, "file") + " found");
        return run.goes_on(found, most_hunted_files);
    });
    show_found(w, hunt.files);
    w.Command5.enabled = false;
    if (hunt.end == HuntEnd::too_many) {
        context.platform.message("The pages lead to more than " + text::grouped(most_hunted_files) +
                                 " files. The lists show the first of them.");
    }
}

}  // namespace

void timmy(cmdg& w, const std::string& path) {
    if (!is_page(path)) return;
    const Result<files::MappedFile> page = files::MappedFile::open(path);
    if (!page) return;
    text::Reader reader{text::Source(page->bytes())};
    while (const auto line = reader.line()) add_links_of_line(w, *line);
    if (path.starts_with(w.chosenDir)) add_links_of_tags(w, path);
}

void connect_spider(shell::Context& context, cmdg& w) {
    w.routes.hunt_links = [&w](const std::string& path) { timmy(w, path); };
    w.Command3.click = [&context, &w] {
        choose_all(context, w, w.List3);
        w.Command3.enabled = false;
    };
    w.Command4.click = [&context, &w] {
        choose_all(context, w, w.List4);
        w.Command4.enabled = w.Command5.enabled = false;
    };
    w.Command5.click = [&context, &w] { hunt_all(context, w); };
    w.Command6.click = [&context] { context.platform.message(std::string(definitions)); };
}

}  // namespace quill::htx
