#include "htx/making/wizard_files.h"

#include "archive/changing/tree_walk.h"
#include "files/atomic_file.h"
#include "files/directory.h"
#include "files/names.h"
#include "files/path.h"
#include "htx/book/book_geometry.h"
#include "htx/html/address.h"
#include "text/utf8.h"

#include <unordered_map>

namespace quill::htx {
namespace {

/// Returns the name of a member. A listed file name may be a link as written in a page, with dots or percents in it.
std::string member_name(const std::string& listed, const std::string& path, bool keep_paths) {
    if (keep_paths) return text::to_utf8(zip::member_name_of(path));
    const Address address = resolve("", listed);
    const bool is_below = address.kind == AddressKind::local && path.ends_with("/" + address.written_path);
    return text::to_utf8(is_below ? address.written_path : files::name_of(path));
}

/// Returns true if the file contains four numbers, as written by an earlier wizard.
bool is_geometry(const std::string& path) {
    const Result<std::string> text = files::read_file(path);
    return text && format_geometry(parse_geometry(*text)) == *text;
}

}  // namespace

std::vector<zip::NewMember> wizard_members(const shell::swit& w, bool keep_paths) {
    std::vector<zip::NewMember> members;
    for (std::size_t row = 0; row < w.List2.count(); ++row) {
        const std::string& path = w.List2.items()[row];
        const std::string listed = row < w.List1.count() ? w.List1.items()[row] : files::name_of(path);
        const bool is_of_book = w.Opti(2).chosen && files::name_of(path) == geometry_member;
        if (is_of_book && is_geometry(path)) continue;  // the book gets its own
        members.push_back({member_name(listed, path, keep_paths), path});
    }
    return members;
}

std::optional<std::string> name_of_two(const std::vector<zip::NewMember>& members) {
    std::unordered_map<std::string, std::string> files;
    for (const zip::NewMember& member : members) {
        const auto [known, is_new] = files.try_emplace(member.name, member.file);
        if (!is_new && !files::same_file(known->second, member.file)) return member.name;
    }
    return std::nullopt;
}

void keep_all_names(std::vector<zip::NewMember>& members) {
    std::unordered_map<std::string, std::string> files;
    for (zip::NewMember& member : members) {
        const std::string dir = files::dir_of(member.name), name = files::name_of(member.name);
        for (unsigned n = 1;; ++n) {
            const std::string free = files::join(dir, files::numbered_name(name, n));
            const auto [known, is_new] = files.try_emplace(free, member.file);
            if (!is_new && !files::same_file(known->second, member.file)) continue;
            member.name = free;
            break;
        }
    }
}

zip::NewMember write_geometry(const shell::Session& session, shell::swit& w) {
    const std::string text =
        format_geometry({session.BookWidth, session.BookHeight, session.BookTop, session.BookLeft});
    const std::string name(geometry_member);
    const std::string path = files::join(files::dir_of(w.List2.items().front()), name);
    if (!files::exists(path) || is_geometry(path)) {
        Result<files::AtomicFile> file = files::AtomicFile::create(path);
        if (file && file->write(text) && file->publish(files::OnCollision::replace)) w.List2.add(path);
    }
    return {name, path, text};
}

void report_left_out(platform::Platform& platform, const std::vector<zip::MemberFailure>& failures) {
    if (failures.empty()) return;
    constexpr std::size_t most_named = 10;
    std::string text = "These files could not be read, and are not in the new file:\n";
    for (std::size_t i = 0; i < failures.size() && i < most_named; ++i) {
        text += "\n" + failures[i].first + ": " + failures[i].second.text;
    }
    if (failures.size() > most_named) text += "\nand " + std::to_string(failures.size() - most_named) + " more";
    platform.warn(text, "Not all files are in it");
}

}  // namespace quill::htx
