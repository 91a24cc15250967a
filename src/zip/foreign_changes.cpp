#include "zip/foreign_changes.h"

#include "checksum/checksum.h"
#include "files/atomic_file.h"
#include "files/path.h"
#include "zip/archive_document.h"
#include "zip/archive_loading.h"
#include "zip/archive_run.h"

#include <utility>

namespace quill::zip {
namespace {

std::optional<files::MappedFile> mapped(const std::string& path) {
    Result<files::MappedFile> file = files::MappedFile::open(path);
    return file ? std::optional(std::move(*file)) : std::nullopt;
}

/// Returns true where the file that `now` is of has the bytes that the rows show. One that was replaced is compared
/// byte by byte, one that was written to or got another date by its size and checksum.
bool has_same_bytes(const arcview& w, const files::FileStamp& now) {
    if (now.same_bytes(*w.stamp)) return true;
    if (now.same_file(*w.stamp))
        return now.size == w.stamp->size && w.crc && w.crc == crc_of_archive(w.ArchivePath, now);
    if (!w.bytes || w.bytes->changed() || now.size != w.bytes->bytes().size()) return false;
    const std::optional<files::MappedFile> other = mapped(w.ArchivePath);
    return other && other->bytes() == w.bytes->bytes() && !other->changed();
}

/// Returns true if no other program has changed the archive's bytes. A new copy of them counts as the archive.
bool is_unchanged(arcview& w) {
    const std::optional<files::FileStamp> now = files::stamp_through_links(w.ArchivePath);
    if (now == w.stamp) return true;
    if (!now || !w.stamp || !has_same_bytes(w, *now)) return false;
    if (!now->same_bytes(*w.stamp)) w.bytes = mapped(w.ArchivePath);
    w.stamp = now;
    return true;
}

/// Writes the archive that the rows show under a free name, with its own access rights. Returns that name.
Result<std::string> write_ours(arcview& w) {
    ArchiveRun run(w, "Writing the archive as this window shows it");
    Result<files::AtomicFile> copy = files::AtomicFile::create_like(w.ArchivePath, *w.bytes);
    if (!copy) return copy.error();
    const std::uint64_t size = w.bytes->bytes().size();
    const Result<std::uint64_t> copied = copy->copy(*w.bytes, 0, size, [&](std::uint64_t done) {
        return run.goes_on({0, 1, done, size});
    });
    if (!copied) return copied.error();
    if (*copied != size || w.bytes->changed()) return files::changed_while_read();
    return copy->publish(files::OnCollision::choose_name, files::Durability::flushed);
}

bool go_on_with_ours(arcview& w) {
    const Result<std::string> path = write_ours(w);
    if (!path) {
        const bool stopped = path.error().code == ErrorCode::cancelled;
        if (!stopped) w.context.platform.warn("The archive could not be written: " + path.error().text + ".");
        return false;
    }
    w.context.session.SelectedDir = files::dir_of(*path);
    w.context.session.SelectedFile = files::name_of(*path);
    show_archive_path(w, *path);
    take_archive(w);
    w.context.platform.message("The archive as this window shows it is now " + *path + ".");
    return true;
}

/// Asks what to do about a change, and does it. Returns true if the rows still match the archive.
bool resolve(arcview& w) {
    const std::optional<files::FileStamp> now = files::stamp_through_links(w.ArchivePath);
    const bool is_kept = w.bytes && !w.bytes->changed() && !(now && w.stamp && now->same_file(*w.stamp));
    platform::Choices choices;
    choices.title = "The archive was changed";
    choices.text = w.ArchivePath + (now ? " was changed by another program." : " is no longer there.");
    enum { reload, ours, cancel };
    std::vector<int> offered;
    const auto offer = [&](int answer, const char* caption) {
        offered.push_back(answer);
        choices.answers.emplace_back(caption);
    };
    if (now) offer(reload, "&Reload");
    if (is_kept) offer(ours, "&Go on with mine");
    offer(cancel, "&Cancel");
    choices.escape_answer = offered.size() - 1;
    const int answer = offered.at(w.context.platform.choose(choices));
    if (answer == ours) return go_on_with_ours(w);
    if (answer == reload) reload_archive(w);
    return false;
}

}  // namespace

std::optional<std::uint32_t> crc_of_archive(const std::string& path, const std::optional<files::FileStamp>& stamp) {
    constexpr std::size_t most = std::size_t{1} << 30U;  // bytes that are read while nothing else goes on
    const std::optional<files::MappedFile> file = mapped(path);
    if (!file || file->bytes().size() > most) return std::nullopt;
    const std::uint32_t crc = quill::crc32(0, file->bytes());
    const bool is_as_shown = files::stamp_through_links(path) == stamp;
    return is_as_shown ? std::optional(crc) : std::nullopt;
}

bool archive_is_ours(arcview& w) {
    const Unwatched unwatched(w);
    return is_unchanged(w) || resolve(w);
}

void notice_foreign_change(arcview& w) {
    const Unwatched unwatched(w);
    const std::optional<files::FileStamp> now = files::stamp_through_links(w.ArchivePath);
    const bool was_asked = w.asked_about && *w.asked_about == now;
    if (was_asked || is_unchanged(w)) return;
    w.asked_about.emplace(now);
    resolve(w);
}

}  // namespace quill::zip
