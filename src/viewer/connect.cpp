#include "viewer/connect.h"

#include "files/directory.h"
#include "viewer/list_manager.h"
#include "viewer/open_album.h"
#include "viewer/open_pictures.h"
#include "viewer/thumbnail_column.h"

namespace quill::viewer {
namespace {

void show_directory(shell::Context& context, const std::string& directory) {
    files::change_directory(directory);
    unload_column(context);
    close_open_pictures(context);
    tittwo& column = show_column(context);
    column.List2.assign({directory});
    imgrefresh(column);
}

}  // namespace

void provide_viewer(shell::Context& context) {
    shell::Routes& routes = context.routes;
    routes.open_pictures = [&context] { show_open_pictures(context).List1.clear(); };
    routes.open_pics = [&context](const std::string& path) { openpics(context, path); };
    routes.open_favorites = [&context] { show_list_manager(context); };
    routes.show_directory = [&context](const std::string& directory) { show_directory(context, directory); };
    routes.show_pictures = [&context](const std::vector<std::string>& paths) { show_set(context, paths); };
}

}  // namespace quill::viewer
