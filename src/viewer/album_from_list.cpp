#include "viewer/album_from_list.h"

#include "files/names.h"
#include "files/path.h"
#include "pics/writing.h"
#include "shell/startup.h"
#include "text/ascii.h"
#include "viewer/favorites_list.h"
#include "viewer/file_run.h"

#include <variant>

namespace quill::viewer {
namespace {

constexpr std::string_view extension = ".pics";

/// The path of the new album; empty where the user wants none.
std::string ask_for_album(shell::Context& context) {
    const std::string directory = shell::in_parent_directory(context.session, "zip-htx directory");
    const std::string typed = context.platform.input(
        {.text = "   What would you like to call the new Favorite Pictures Album to create in " + directory + "?",
         .title = "New album"});
    if (typed.empty()) return {};
    const bool has_extension = text::ends_with_ignoring_case(typed, extension);
    const std::string name = files::safe_name(has_extension ? typed : typed + std::string(extension));
    if (name.size() > extension.size()) return files::join(directory, name);
    context.platform.message("That can't be the name of a file.");
    return {};
}

/// The pictures of the list that can be read; the others are reported.
std::vector<pics::Item> pictures_of_list(shell::Context& context) {
    std::vector<pics::Item> items;
    for (const std::string& path : favorite_pictures(context.session.FavListPath)) {
        items.push_back({.path = path, .name = files::name_of(path)});
    }
    const std::vector<pics::WriteFailure> missing = pics::measure(items);
    std::string names;
    for (auto failure = missing.rbegin(); failure != missing.rend(); ++failure) {
        names = "\n" + items[*failure->item].path + names;
        items.erase(items.begin() + static_cast<std::ptrdiff_t>(*failure->item));
    }
    if (!names.empty()) context.platform.message("These pictures can't be read and are left out:\n" + names);
    return items;
}

std::string failure_text(const std::string& name, const pics::WriteFailure& failure) {
    if (failure.error.code != ErrorCode::exists) return name + " could not be written: " + failure.error.text + ".";
    return "A file named " + name +
           " already exists in this directory. Select a different name or change to a different directory.";
}

}  // namespace

void make_album_of_list(shell::Context& context) {
    const std::string path = ask_for_album(context);
    if (path.empty()) return;
    pics::AlbumRequest request{.path = path, .items = pictures_of_list(context)};
    if (request.items.empty()) {
        context.platform.message("There are no pictures on the list.");
        return;
    }
    const std::uint64_t size = pics::album_size(request);
    std::variant<std::string, pics::WriteFailure> written;
    {
        FileRun run(context, "Making " + files::name_of(path));
        request.watch = [&](std::uint64_t done) { return run.goes_on(done, size); };
        written = pics::write_album(request);
    }
    const auto* const failure = std::get_if<pics::WriteFailure>(&written);
    if (failure != nullptr && failure->error.code == ErrorCode::cancelled) return;
    context.platform.message(failure == nullptr ? "Done." : failure_text(files::name_of(path), *failure));
}

}  // namespace quill::viewer
