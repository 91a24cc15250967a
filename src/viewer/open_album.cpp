#include "viewer/open_album.h"

#include "files/directory.h"
#include "files/path.h"
#include "viewer/frame_window.h"

namespace quill::viewer {

void empty_album_directory(const shell::Session& session, std::string_view patterns, const std::string& but) {
    const std::string directory = album_directory(session);
    const auto names = files::list_files(directory, patterns);
    if (!names) return;
    for (const std::string& name : *names) {
        const std::string path = files::join(directory, name);
        if (!files::same_file(path, but)) files::remove_file(path);
    }
}

void openpics(shell::Context& context, const std::string&) {
    shell::say_not_yet(context.platform, "open PICS files");
}

}  // namespace quill::viewer
