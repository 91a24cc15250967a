#include "cli/zip_command.h"

#include "archive/changing/archive_change.h"
#include "archive/changing/tree_walk.h"
#include "archive/extracting/extraction.h"
#include "archive/extracting/member_choice.h"
#include "archive/methods/compressors.h"
#include "archive/names/member_names.h"
#include "cli/interruption.h"
#include "cli/password_file.h"
#include "cli/progress.h"
#include "cli/usage.h"
#include "cli/zip_report.h"
#include "files/directory.h"
#include "files/path.h"
#include "files/unfinished.h"
#include "text/utf8.h"

#include <CLI/CLI.hpp>

#include <algorithm>
#include <filesystem>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <utility>
#include <vector>

namespace quill::cli {
namespace {

struct ZipRequest {
    std::string archive;
    std::vector<std::string> names;
    std::string password_file;
    std::string into = ".";
    std::string method = "deflate";
    std::string names_in;    ///< a character set; empty: the best fit
    std::string encryption;  ///< empty: the archive's own
    ResultOptions results;
    bool bare_names = false;
    bool no_limits = false;
};

/// Returns the code page of --names-in; empty if it was not given.
std::string_view code_page_of(const ZipRequest& request) {
    const std::optional<zip::CharacterSet> set = zip::character_set(request.names_in);
    return set ? set->code_page : std::string_view();
}

Result<zip::Archive> open_archive(const ZipRequest& request) {
    Result<zip::Archive> archive = zip::Archive::open(request.archive);
    if (archive && !request.names_in.empty()) archive->read_names_in(code_page_of(request));
    return archive;
}

/// Returns the numbers of the members that `names` asks for: a member itself, or a directory and all that is in it; all
/// members if `names` is empty.
std::vector<std::size_t> chosen_members(const std::vector<zip::Member>& members, const std::vector<std::string>& names,
                                        ZipReport& report) {
    std::vector<std::size_t> chosen;
    zip::MemberChoice choice(names);
    for (std::size_t i = 0; i < members.size(); ++i) {
        if (choice.has(members[i].name)) chosen.push_back(i);
    }
    for (const std::string& name : choice.unmatched()) report.missing(name);
    return chosen;
}

ExitStatus list(const ZipRequest& request, const Console& console) {
    ZipReport report(console, request.results.style());
    const Result<zip::Archive> archive = open_archive(request);
    if (!archive) {
        report.fail(request.archive, archive.error());
        return report.finish();
    }
    report.archive_problems(request.archive, *archive);
    for (const std::size_t i : chosen_members(archive->members(), request.names, report))
        report.list(archive->members()[i]);
    return report.finish();
}

/// Extracts into the directory of --into, which is created if missing.
Status extract_below(const std::string& into, const zip::Archive& archive, const std::vector<std::size_t>& chosen,
                     const zip::MemberPaths& paths, const zip::ExtractOptions& options, const zip::TakeResult& take) {
    const Result<files::Unfinished> made = files::make_output_directory(into);
    if (!made) return made.error();
    return zip::extract_members(archive, chosen, paths, into, options, take);
}

/// Runs `extract`, or `test` if nothing must be written.
ExitStatus read(const ZipRequest& request, const Console& console, bool write) {
    ZipReport report(console, request.results.style());
    const Result<std::string> password = read_password(request.password_file);
    const Result<zip::Archive> archive = open_archive(request);
    if (!password) report.fail(request.password_file, password.error());
    if (!archive) report.fail(request.archive, archive.error());
    if (!password || !archive) return report.finish();
    report.archive_problems(request.archive, *archive);
    const std::vector<std::size_t> chosen = chosen_members(archive->members(), request.names, report);

    const zip::MemberPaths paths(write ? archive->members() : std::vector<zip::Member>());

    const Interruption interruption;
    ProgressBar bar(console, !request.results.quiet);
    std::mutex terminal;
    zip::ExtractOptions options;
    options.password = *password;
    if (request.no_limits) options.limits = zip::Limits::lifted();
    options.progress = [&](const zip::Progress& progress) {
        const std::lock_guard lock(terminal);
        bar.show(files::name_of(request.archive), progress.bytes_done, progress.bytes);
        return !Interruption::caught();
    };
    const zip::TakeResult take = [&](const zip::MemberResult& result) {
        if (Interruption::caught()) return;
        const std::lock_guard lock(terminal);
        bar.clear();
        const bool is_here = result.path.empty() || request.into == ".";
        report.add(archive->members()[result.member], result,
                   is_here ? result.path : files::join(request.into, result.path));
    };
    const Status done = write ? extract_below(request.into, *archive, chosen, paths, options, take)
                              : zip::test_members(*archive, chosen, options, take);
    bar.clear();
    if (!done && done.error().code == ErrorCode::limit) {
        report.refuse(request.archive, done.error().text + "; --no-limits reads it all the same");
    } else if (!done) {
        report.fail(request.into, done.error());
    }
    if (archive->cut_short()) report.fail(request.archive, {ErrorCode::io, 0, "the file was cut while it was read"});
    return report.finish();
}

/// The name of what failed, and the reason.
using Failure = std::pair<std::string, Error>;

/// Returns the entries for `add`: each name with all that is in it; the archive itself only if the user named it.
/// Appends directories that can't be read to `unread`.
std::vector<zip::TreeEntry> entries_to_add(const ZipRequest& request, std::vector<Failure>& unread) {
    std::vector<zip::TreeEntry> entries;
    for (const std::string& name : request.names) {
        for (zip::TreeEntry& entry : zip::walk_tree(name)) {
            if (entry.unreadable) unread.emplace_back(entry.path, *entry.unreadable);
            const bool unnamed = request.bare_names || entry.member_name.empty();
            if (entry.kind == zip::EntryKind::directory && unnamed) continue;
            if (entry.path != name && files::same_file(entry.path, request.archive)) continue;
            if (request.bare_names) entry.member_name = files::name_of(entry.member_name);
            entries.push_back(std::move(entry));
        }
    }
    return entries;
}

/// Returns true if both would become the same member.
bool are_same(const zip::TreeEntry& one, const zip::TreeEntry& other) {
    if (one.kind != other.kind) return false;
    if (one.kind != zip::EntryKind::link) return files::same_file(one.path, other.path);
    std::error_code failure;
    return std::filesystem::read_symlink(one.path, failure) == std::filesystem::read_symlink(other.path, failure);
}

/// Fails if two files would become one member, so that one of them would be lost.
Status check_names(const std::vector<zip::TreeEntry>& entries) {
    std::unordered_map<std::string, const zip::TreeEntry*> known;
    for (const zip::TreeEntry& entry : entries) {
        if (entry.kind == zip::EntryKind::directory) continue;
        const auto [other, is_new] = known.try_emplace(text::to_utf8(entry.member_name), &entry);
        if (is_new || are_same(*other->second, entry)) continue;
        return Error{ErrorCode::bad_argument, 0,
                     other->second->path + " would be a member of the same name, " + entry.member_name};
    }
    return Done{};
}

Status add_entry(zip::ArchiveChange& change, const zip::TreeEntry& entry, const zip::PackOptions& options) {
    switch (entry.kind) {
        case zip::EntryKind::directory:
            return change.add_directory(entry.member_name, entry.modified);
        case zip::EntryKind::link:
            return change.add_link(entry.path, entry.member_name, options);
        case zip::EntryKind::file:
            break;
    }
    return change.add_file(entry.path, entry.member_name, options);
}

/// Returns the error for a request that changes nothing.
Error nothing_to_do() {
    return {ErrorCode::cancelled, 0, "there is nothing to do"};
}

/// Reports a completed change, or the failure that prevented it. Says nothing about an interrupted change: the signal
/// is about to end the process.
ExitStatus finish_change(ZipReport& report, const ZipRequest& request, const Status& changed,
                         const std::vector<Failure>& failures) {
    for (const auto& [what, error] : failures) report.fail(what, error);
    if (!changed && changed.error().code != ErrorCode::cancelled) report.fail(request.archive, changed.error());
    if (Interruption::caught()) return ExitStatus::failed;
    const ExitStatus status = report.finish();
    return changed && status == ExitStatus::nothing ? ExitStatus::good : status;
}

bool is_not_interrupted(const zip::Progress&) {
    return !Interruption::caught();
}

std::vector<std::string> method_names() {
    std::vector<std::string> names;
    for (const archive::CompressionMethod& method : archive::compression_methods()) names.emplace_back(method.name);
    return names;
}

std::uint16_t method_of(const ZipRequest& request) {
    const auto methods = archive::compression_methods();
    return std::find_if(methods.begin(), methods.end(), [&](const auto& row) { return row.name == request.method; })
        ->number;
}

struct EncryptionRow {
    const char* name;
    archive::Encryption encryption;
};

constexpr auto no_encryption = "none";
constexpr EncryptionRow encryptions[] = {{"traditional", archive::Encryption::traditional},
                                         {"aes128", archive::Encryption::aes128},
                                         {"aes192", archive::Encryption::aes192},
                                         {"aes256", archive::Encryption::aes256}};

std::vector<std::string> encryption_names() {
    std::vector<std::string> names{no_encryption};
    for (const EncryptionRow& row : encryptions) names.emplace_back(row.name);
    return names;
}

/// Returns the requested encryption, else the archive's own.
archive::Encryption encryption_for(const ZipRequest& request, const zip::ArchiveChange& change) {
    for (const EncryptionRow& row : encryptions) {
        if (row.name == request.encryption) return row.encryption;
    }
    return change.usual_encryption().value_or(archive::Encryption::aes256);
}

/// Fails if an encryption is requested without a password, or a password is given that would not be used.
Status check_encryption(const ZipRequest& request) {
    const bool is_encrypted = !request.encryption.empty() && request.encryption != no_encryption;
    if (is_encrypted && request.password_file.empty()) {
        return Error{ErrorCode::bad_argument, 0, "--encryption " + request.encryption + " needs --password-file"};
    }
    if (request.encryption == no_encryption && !request.password_file.empty()) {
        return Error{ErrorCode::bad_argument, 0, "--encryption none and --password-file exclude each other"};
    }
    return Done{};
}

/// Fails if files would be stored unencrypted among encrypted members without an explicit request.
Status check_password(const ZipRequest& request, const zip::ArchiveChange& change) {
    if (!request.password_file.empty() || request.encryption == no_encryption) return Done{};
    if (!change.usual_encryption()) return Done{};
    return Error{ErrorCode::bad_argument, 0,
                 "its members are encrypted: --password-file is needed, or --encryption none to add without"};
}

ExitStatus add(const ZipRequest& request, const Console& console) {
    ZipReport report(console, ReportStyle::silent);
    if (const Status possible = check_encryption(request); !possible) {
        report.fail(request.archive, possible.error());
        return report.finish();
    }
    const Result<std::string> password = read_password(request.password_file);
    if (!password) {
        report.fail(request.password_file, password.error());
        return report.finish();
    }
    std::vector<Failure> unread;
    const std::vector<zip::TreeEntry> entries = entries_to_add(request, unread);
    if (const Status distinct = check_names(entries); !distinct) {
        report.fail(request.archive, distinct.error());
        return report.finish();
    }
    zip::PackOptions options{.password = *password, .method = method_of(request)};
    const Interruption interruption;
    std::vector<Failure> failures;
    std::size_t added = 0;
    const auto edit = [&](zip::ArchiveChange& change) {
        failures = unread;
        added = 0;
        if (Status possible = check_password(request, change); !possible) return possible;
        options.encryption = encryption_for(request, change);
        for (const zip::TreeEntry& entry : entries) {
            Status status = add_entry(change, entry, options);
            if (!status && status.error().code == ErrorCode::cancelled) return status;
            if (status) ++added;
            if (!status) failures.emplace_back(entry.path, status.error());
        }
        return added != 0 ? Status(Done{}) : Status(nothing_to_do());
    };
    const Status changed = zip::change_archive(request.archive, is_not_interrupted, edit, code_page_of(request));
    return finish_change(report, request, changed, failures);
}

ExitStatus remove(const ZipRequest& request, const Console& console) {
    ZipReport report(console, ReportStyle::silent);
    if (!files::exists(request.archive)) {
        report.fail(request.archive, {ErrorCode::not_found, 0, "No such file or directory"});
        return report.finish();
    }
    const Interruption interruption;
    std::vector<Failure> failures;
    const auto edit = [&](zip::ArchiveChange& change) {
        failures.clear();
        zip::MemberChoice choice(request.names);
        std::vector<std::size_t> members;
        for (std::size_t i = 0; i < change.old_members().size(); ++i) {
            if (choice.has(change.old_members()[i].name)) members.push_back(i);
        }
        for (const std::string& name : choice.unmatched()) failures.emplace_back(name, zip_member_missing());
        return members.empty() ? Status(nothing_to_do()) : change.remove(members);
    };
    const Status changed = zip::change_archive(request.archive, is_not_interrupted, edit, code_page_of(request));
    return finish_change(report, request, changed, failures);
}

using Command = ExitStatus (*)(const ZipRequest&, const Console&);

struct CommandRow {
    const char* name;
    const char* about;
    Command run;
    bool reads_members;  ///< accepts a password and limits
    bool writes_files;
    bool has_results;
    bool needs_names;
    const char* names;
};

constexpr std::size_t extract_row = 1;
constexpr CommandRow commands[] = {
    {"list", "List the members of an archive", list, false, false, true, false,
     "Members or directories in the archive (default: all)"},
    {"extract", "Write members of an archive to the disk",
     [](const ZipRequest& r, const Console& c) { return read(r, c, true); }, true, true, true, false,
     "Members or directories in the archive (default: all)"},
    {"add", "Put files into an archive, which is made if it does not exist", add, false, false, false, true,
     "Files, and directories with all that is in them; links in these are\nstored as links"},
    {"remove", "Remove members from an archive", remove, false, false, false, true,
     "Members, or directories with all that is in them"},
    {"test", "Read members of an archive and write nothing",
     [](const ZipRequest& r, const Console& c) { return read(r, c, false); }, true, false, true, false,
     "Members or directories in the archive (default: all)"},
};

constexpr const char* footer =
    "`list` prints a line for each member: name, size in bytes, compressed size, method,\n"
    "date and time, with tabs between; `extract` and `test` print name, size, verdict,\n"
    "method. The verdict is `verified` (the checksum agrees), `whole`, `damaged` (written\n"
    "as far as possible) or `refused`. Names are made safe: nothing is written outside the\n"
    "directory, no link is made or followed, no file is replaced; if a name is taken, the\n"
    "file is called `name (2).ext`. A change writes a new archive beside the old one and\n"
    "renames it after checking it. Exit status: 0 all is well; 1 a member is damaged or\n"
    "refused, or the archive is damaged; 2 the archive is empty; 3 bad usage, or a file\n"
    "can't be read or written.";

std::vector<std::string> character_set_names() {
    std::vector<std::string> names;
    for (const zip::CharacterSet& set : zip::character_sets) names.emplace_back(set.name);
    return names;
}

void add_reading_options(CLI::App& command, const CommandRow& row, ZipRequest& request) {
    if (row.reads_members || row.run == add) {
        command.add_option("--password-file", request.password_file, "The password is the first line of this file")
            ->type_name("FILE");
    }
    if (row.reads_members) {
        command.add_flag("--no-limits", request.no_limits,
                         "Read the archive even if it looks like an archive bomb: it unpacks\n"
                         "to more than 100 MB and 200 times its own size, to more than 100 GiB,\n"
                         "or to over 1,000,000 members, or members overlap each other");
    }
    if (row.writes_files) {
        command
            .add_option("--into", request.into,
                        "Write below this directory instead of the current one; it is made if\n"
                        "it does not exist")
            ->type_name("DIR");
    }
}

void add_changing_options(CLI::App& command, ZipRequest& request) {
    command
        .add_option("--method", request.method,
                    "Compress by this method; a file that would not become smaller\nis stored")
        ->check(one_of(method_names()))
        ->capture_default_str();
    command
        .add_option("--encryption", request.encryption,
                    "With --password-file, encrypt in this way (default: as the archive's\n"
                    "other members are, or else aes256; old programs read only traditional,\n"
                    "which can be broken); `none` adds without a password to an archive\n"
                    "with encrypted members")
        ->check(one_of(encryption_names()));
    command.add_flag("--bare-names", request.bare_names, "Store names without directories");
}

void add_subcommand(CLI::App& parent, const CommandRow& row, Work& work) {
    auto* command = parent.add_subcommand(row.name, row.about);
    const auto request = std::make_shared<ZipRequest>();
    command->add_option("ARCHIVE", request->archive, "The ZIP file")->required();
    auto* names = command->add_option("NAME", request->names, row.names);
    if (row.needs_names) names->required();
    add_reading_options(*command, row, *request);
    if (row.run == add) add_changing_options(*command, *request);
    command
        ->add_option("--names-in", request->names_in,
                     "Read names whose character set the archive does not state in this one\n"
                     "(default: the one that fits best)")
        ->type_name("CHARSET")
        ->check(one_of(character_set_names()));
    if (row.has_results) {
        add_result_options(*command, request->results);
    } else {
        command->add_flag("--quiet", request->results.quiet, "Print only errors");
    }
    command->callback([&work, request, run = row.run] {
        work = [request, run](const Console& console) { return run(*request, console); };
    });
}

}  // namespace

void add_zip_command(CLI::App& app, Work& work) {
    auto* zip = app.add_subcommand("zip", "List, extract and change ZIP files");
    zip->require_subcommand(1);
    zip->footer(footer);
    fill_when_used(*zip, [&work](CLI::App& group) {
        for (const CommandRow& row : commands) add_subcommand(group, row, work);
    });
}

void add_extract_command(CLI::App& parent, Work& work) {
    add_subcommand(parent, commands[extract_row], work);
}

}  // namespace quill::cli
