#include "htx/open_book.h"

#include "files/directory.h"
#include "files/path.h"
#include "htx/book/book_geometry.h"
#include "htx/book_reader.h"
#include "shell/main_window.h"
#include "zip/archive_leaving.h"
#include "zip/archive_window.h"

#include <utility>
#include <vector>

namespace quill::htx {
namespace {

/// Gives the window the size and place stored in the book. A book without them, or with an empty size, gets those of a
/// new window.
void size_window(Form7& w, const std::string& geometry_file) {
    const Result<std::string> text =
        geometry_file.empty() ? Result<std::string>(std::string()) : files::read_file(geometry_file);
    BookGeometry geometry = parse_geometry(text ? *text : std::string());
    if (geometry.width <= 0 || geometry.height <= 0) {
        geometry = {static_cast<float>(w.width), static_cast<float>(w.height), static_cast<float>(w.top),
                    static_cast<float>(w.left)};
    }
    const platform::Machine& machine = w.context.platform.machine();
    w.wanted = geometry;
    w.fit_to({{0, 0, static_cast<float>(machine.screen_width()), static_cast<float>(machine.screen_height())}});
}

void show_book(shell::Context& context, zip::NewZIP& archives) {
    context.windows.unload<Form7>();
    auto& w = context.windows.load<Form7>(context);
    std::vector<Form7::File> unpacked;
    const zip::WorkCopies& copies = archives.copies();
    for (std::size_t row = 0; row < copies.count(); ++row) {
        std::string path = copies.path_of(row);
        if (!path.empty()) unpacked.push_back({copies.of(row)->result.path, std::move(path)});
    }
    w.caption = context.session.SelectedFile;
    w.remember_in(book_memory_file(), files::join(context.session.SelectedDir, context.session.SelectedFile));
    w.show_files(std::move(unpacked));
    const std::string geometry(geometry_member);
    size_window(w, w.path_of({AddressKind::local, geometry, geometry, {}}));
    w.resized();
    w.closed = [&context] {
        if (auto* archive = context.windows.loaded<zip::arcview>()) close_book_archive(*archive);
    };
    w.visible = true;
}

}  // namespace

void provide_reader(shell::Context& context, zip::NewZIP& archives) {
    archives.show_book = [&context, &archives] { show_book(context, archives); };
    context.routes.size_book = [&context] {
        const auto& pages = context.windows.load<shell::swit>().List2.items();
        if (!pages.empty()) size_book_window(context, pages.front());
    };
}

}  // namespace quill::htx
