#include "viewer/open_album.h"

#include "files/directory.h"
#include "files/path.h"
#include "pics/album.h"
#include "pics/unpacking.h"
#include "text/count.h"
#include "viewer/file_run.h"
#include "viewer/frame_window.h"
#include "viewer/picture_names.h"
#include "viewer/thumbnail_column.h"

#include <algorithm>

namespace quill::viewer {
namespace {

constexpr int plain_mode = 1, thumbnail_mode = 2;

constexpr const char* no_album =
    "This is not a valid PICS file as defined by the specifications for the multiple image PICS format as it is "
    "defined by this and other multiple image PICS viewers downloadable from its maker's web site and elsewhere.";

void report_failure(platform::Platform& platform, const std::string& path, const Error& error) {
    platform.warn(error.code == ErrorCode::bad_input
                      ? std::string(no_album)
                      : files::name_of(path) + " could not be opened: " + error.text + ".");
}

/// Removes an earlier album's file of that name, but never the album itself.
std::string free_path(const shell::Session& session, const pics::Album& album, const std::string& name) {
    std::string path = files::join(album_directory(session), name);
    if (!files::same_file(path, album.path())) files::remove_file(path);
    return path;
}

/// The result of unpacking an album.
struct UnpackedAlbum {
    std::vector<std::string> names;  ///< of the new files, thumbnails first
    std::size_t not_whole = 0;       ///< pictures that are damaged or missing
    bool stopped = false;
};

void unpack_thumbnails(const shell::Session& session, const pics::Album& album, UnpackedAlbum& unpacked) {
    for (const pics::Entry& entry : album.entries()) {
        if (!entry.thumbnail_at) continue;
        const std::string path = free_path(session, album, album_thumbnail_of(entry.file_name));
        const Result<std::string> made = pics::unpack_thumbnail(album, entry, path);
        if (made) unpacked.names.push_back(files::name_of(*made));
    }
}

void unpack_pictures(shell::Context& context, const pics::Album& album, UnpackedAlbum& unpacked) {
    FileRun run(context, "Opening " + files::name_of(album.path()));
    const std::vector<pics::Entry>& entries = album.entries();
    for (std::size_t i = 0; i < entries.size() && !unpacked.stopped; ++i) {
        const pics::Entry& entry = entries[i];
        const pics::Watch watch = [&](std::uint64_t done) { return run.goes_on(done, entry.size, i, entries.size()); };
        const auto made = pics::unpack_picture(album, entry, free_path(context.session, album, entry.file_name), watch);
        if (made) unpacked.names.push_back(files::name_of(made->path));
        if (!made || entry.verdict > report::Verdict::whole) ++unpacked.not_whole;
        unpacked.stopped = !made && made.error().code == ErrorCode::cancelled;
    }
}

void report_damage(platform::Platform& platform, const pics::Album& album, const UnpackedAlbum& unpacked) {
    const std::size_t count = album.entries().size();
    if (unpacked.stopped || (unpacked.not_whole == 0 && count > 0)) return;
    platform.warn(count == 0 ? "There are no pictures in this album."
                             : "This album is damaged: " + std::to_string(unpacked.not_whole) + " of its " +
                                   text::counted(count, "picture") + " could not be read whole.");
}

}  // namespace

void empty_album_directory(const shell::Session& session, std::string_view patterns, const std::string& but) {
    const std::string directory = album_directory(session);
    const auto names = files::list_files(directory, patterns);
    if (!names) return;
    for (const std::string& name : *names) {
        const std::string path = files::join(directory, name);
        if (!files::same_file(path, but)) files::remove_file(path);
    }
}

void openpics(shell::Context& context, const std::string& path) {
    const Result<pics::Album> album = pics::Album::open(path);
    if (!album) {
        report_failure(context.platform, path, album.error());
        return;
    }
    unload_column(context);
    UnpackedAlbum unpacked;
    const bool with_thumbnails = album->form() != pics::Form::plain;
    if (with_thumbnails) unpack_thumbnails(context.session, *album, unpacked);
    unpack_pictures(context, *album, unpacked);
    show_frame(context).List1.assign(std::move(unpacked.names));
    context.session.PicsMode = with_thumbnails ? thumbnail_mode : plain_mode;
    files::change_directory(album_directory(context.session));
    show_column(context);
    report_damage(context.platform, *album, unpacked);
}

}  // namespace quill::viewer
