#include "cli/album_command.h"

#include "cli/album_report.h"
#include "cli/file_names.h"
#include "cli/interruption.h"
#include "cli/progress.h"
#include "cli/usage.h"
#include "files/copies.h"
#include "files/directory.h"
#include "files/path.h"
#include "files/unfinished.h"
#include "pics/thumbnail.h"
#include "pics/unpacking.h"
#include "pics/writing.h"
#include "worker/waiting_decoder.h"

#include <CLI/CLI.hpp>

#include <memory>
#include <string>
#include <unordered_map>
#include <utility>
#include <vector>

namespace quill::cli {
namespace {

struct AlbumOptions {
    std::string album;
    std::vector<std::string> names;
    FileNames files;
    std::string into = ".";
    ResultOptions results;
    bool again = false;
    bool force = false;
    bool thumbnails = false;
};

/// Returns the pictures of the album that `names` asks for, or all if it is empty. A name selects every picture that
/// has it.
std::vector<const pics::Entry*> chosen_entries(const pics::Album& album, const std::vector<std::string>& names,
                                               AlbumReport& report) {
    std::unordered_map<std::string, bool> wanted;
    for (const std::string& name : names) wanted.emplace(name, false);
    std::vector<const pics::Entry*> chosen;
    for (const pics::Entry& entry : album.entries()) {
        const auto found = wanted.find(entry.name);
        if (found == wanted.end() && !names.empty()) continue;
        if (found != wanted.end()) found->second = true;
        chosen.push_back(&entry);
    }
    for (const std::string& name : names) {
        if (!wanted[name]) report.fail(name, {ErrorCode::not_found, 0, "the album has no such picture"});
    }
    return chosen;
}

/// Opens the album and calls `work` with it and the requested pictures.
template <class WorkOnAlbum>
ExitStatus with_album(const AlbumOptions& options, const Console& console, WorkOnAlbum&& work) {
    AlbumReport report(console, options.results.style());
    const Result<pics::Album> album = pics::Album::open(options.album);
    if (album) {
        report.problems(options.album, album->problems());
        work(*album, chosen_entries(*album, options.names, report), report);
        if (album->file().cut_short()) report.fail(options.album, files::changed_while_read());
    } else {
        report.fail(options.album, album.error());
    }
    return report.finish();
}

ExitStatus list(const AlbumOptions& options, const Console& console) {
    return with_album(options, console, [](const auto&, const auto& chosen, AlbumReport& report) {
        for (const pics::Entry* entry : chosen) report.list(*entry);
    });
}

/// Writes pictures of an album into the directory of --into.
class Extraction {
  public:
    Extraction(const AlbumOptions& options, const Console& console, const pics::Album& album, AlbumReport& report)
        : options_(options), album_(album), report_(report), bar_(console, !options.results.quiet) {}

    void run(const std::vector<const pics::Entry*>& chosen) {
        const Result<files::Unfinished> made = files::make_output_directory(options_.into);
        if (!made) return report_.fail(options_.into, made.error());
        for (const pics::Entry* entry : chosen) total_ += entry->size;
        for (const pics::Entry* entry : chosen) {
            if (Interruption::caught()) return;
            extract(*entry);
            done_ += entry->size;
        }
        bar_.clear();
    }

  private:
    std::string path_of(const pics::Entry& entry) const {
        return options_.into == "." ? entry.file_name : files::join(options_.into, entry.file_name);
    }

    std::string copy_of(const std::string& path, const files::AtomicFile& written) {
        if (options_.again || !files::exists(path)) return {};
        const auto bytes = written.read_back();
        return bytes ? copies_.find(path, bytes->bytes()).value_or(std::string()) : std::string();
    }

    void extract(const pics::Entry& entry) {
        const std::string path = path_of(entry);
        const auto watch = [&](std::uint64_t done) {
            bar_.show(entry.file_name, done_ + done, total_);
            return !Interruption::caught();
        };
        const auto find_copy = [&](const files::AtomicFile& written) { return copy_of(path, written); };
        const Result<pics::Unpacked> unpacked =
            pics::unpack_picture(album_, entry, path, watch, find_copy, &last_numbers_);
        bar_.clear();
        if (unpacked) {
            report_.add(entry, unpacked->path, unpacked->already_there);
        } else if (unpacked.error().code == ErrorCode::bad_input) {
            report_.add(entry, {}, false);  // a result, though one without a file
        } else if (unpacked.error().code != ErrorCode::cancelled) {
            report_.fail(path, unpacked.error());
        }
    }

    const AlbumOptions& options_;
    const pics::Album& album_;
    AlbumReport& report_;
    ProgressBar bar_;
    files::Copies copies_;
    files::LastNumbers last_numbers_;
    std::uint64_t total_ = 0;
    std::uint64_t done_ = 0;
};

ExitStatus extract(const AlbumOptions& options, const Console& console) {
    const Interruption interruption;
    return with_album(options, console, [&](const auto& album, const auto& chosen, AlbumReport& report) {
        Extraction(options, console, album, report).run(chosen);
    });
}

/// Reports limits of the new album that matter to the programs that will read it.
void note_limits(const pics::AlbumRequest& request, AlbumReport& report) {
    if (request.items.size() > pics::most_pictures_of_old_readers ||
        pics::album_size(request) > pics::most_bytes_of_old_readers) {
        report.note(request.path, report::traits_of(report::ProblemKind::beyond_old_readers).sentence);
    }
}

ExitStatus write(const pics::AlbumRequest& request, AlbumReport& report) {
    const auto written = pics::write_album(request);
    if (const auto* path = std::get_if<std::string>(&written)) {
        report.made(*path, pics::album_size(request), request.items.size());
        note_limits(request, report);
        return report.finish();
    }
    const auto& failure = std::get<pics::WriteFailure>(written);
    if (failure.error.code == ErrorCode::cancelled) return ExitStatus::failed;
    report.fail(failure.item ? request.items[*failure.item].path : request.path, failure.error);
    return report.finish();
}

/// Makes the thumbnail of a picture; a white one, with a remark, where the file can't be decoded.
std::string thumbnail_of(const pics::Item& item, worker::WaitingDecoder& decoder, AlbumReport& report) {
    const platform::Picture picture = decoder.decode({item.path}, pics::thumbnail_bounds);
    if (picture.state == platform::PictureState::failed) report.note(item.path, "no thumbnail: " + picture.reason);
    return pics::thumbnail_of(picture.pixels, picture.original);
}

ExitStatus create(const AlbumOptions& options, const Console& console) {
    AlbumReport report(console, options.results.style());
    const Result<std::vector<std::string>> names = all_names(options.files, console.in);
    if (!names) {
        report.fail(options.files.list, names.error());
        return report.finish();
    }
    if (options.thumbnails && worker::find_worker().empty()) {
        report.fail(options.album, {ErrorCode::not_found, 0, "the picture decoder, quillpicture, is not installed"});
        return report.finish();
    }
    const Interruption interruption;
    ProgressBar bar(console, !options.results.quiet);
    pics::AlbumRequest request;
    request.path = options.album;
    request.on_collision = options.force ? files::OnCollision::replace : files::OnCollision::fail;
    for (const std::string& name : *names) request.items.push_back({name, files::name_of(name)});
    const std::vector<pics::WriteFailure> unreadable = pics::measure(request.items);
    for (const pics::WriteFailure& failure : unreadable) report.fail(request.items[*failure.item].path, failure.error);
    if (!unreadable.empty()) return report.finish();
    worker::WaitingDecoder decoder;
    if (options.thumbnails) {
        request.form = pics::Form::with_thumbnails;
        request.thumbnail = [&](const pics::Item& item) { return thumbnail_of(item, decoder, report); };
    }
    request.watch = [&, total = pics::album_size(request)](std::uint64_t done) {
        bar.show(files::name_of(request.path), done, total);
        return !Interruption::caught();
    };
    return write(request, report);
}

using Command = ExitStatus (*)(const AlbumOptions&, const Console&);

constexpr const char* footer =
    "An album (.pics) holds unchanged picture files. `list` and `extract` print a line a picture: name, size in\n"
    "bytes, verdict, with tabs between; `already there` follows if a file of that name has the same bytes. The\n"
    "verdict is `whole` (the sizes account for the album), `damaged` or `incomplete`. Names are made safe, and a name\n"
    "that is taken becomes `name (2).ext`; no file is replaced. `create` writes the album when all files can be read.";

CLI::App* add_command(CLI::App& album, const char* name, const char* about, Work& work, Command run,
                      const std::shared_ptr<AlbumOptions>& options) {
    auto* command = album.add_subcommand(name, about);
    command->add_option("ALBUM", options->album, "The album")->required();
    add_result_options(*command, options->results);
    command->callback(
        [&work, options, run] { work = [options, run](const Console& console) { return run(*options, console); }; });
    return command;
}

void add_commands(CLI::App& album, Work& work) {
    constexpr const char* about_names = "Pictures in the album (default: all)";

    const auto listing = std::make_shared<AlbumOptions>();
    add_command(album, "list", "List the pictures of an album", work, list, listing)
        ->add_option("NAME", listing->names, about_names);

    const auto extracting = std::make_shared<AlbumOptions>();
    auto* extracts = add_command(album, "extract", "Write pictures of an album to the disk", work, extract, extracting);
    extracts->add_option("NAME", extracting->names, about_names);
    extracts
        ->add_option("--into", extracting->into,
                     "Write into this directory, which is made if missing, instead of the current one")
        ->type_name("DIR");
    extracts->add_flag("--again", extracting->again, "Write files again even if they exist, as name (2).ext");

    const auto creating = std::make_shared<AlbumOptions>();
    auto* creates = add_command(album, "create", "Put picture files into a new album", work, create, creating);
    add_file_names(*creates, creating->files, "Picture files, in the order of the album");
    creates->add_flag("--thumbnails", creating->thumbnails,
                      "Put a thumbnail of each picture into the album, for viewers that make none");
    creates->add_flag("--force", creating->force, "Replace an album that is there already");
}

}  // namespace

void add_album_command(CLI::App& app, Work& work) {
    auto* album = app.add_subcommand("album", "List, extract and create picture albums (.pics)");
    album->require_subcommand(1);
    album->footer(footer);
    fill_when_used(*album, [&work](CLI::App& group) { add_commands(group, work); });
}

}  // namespace quill::cli
