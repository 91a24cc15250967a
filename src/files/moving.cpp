#include "files/moving.h"

#include "files/atomic_file.h"
#include "files/directory.h"
#include "files/file_stamp.h"
#include "files/names.h"
#include "files/path.h"

#include <filesystem>
#include <optional>

namespace quill::files {
namespace {

/// Makes the directories above `path`; if that fails, their first use reports why.
void make_directories_above(const std::string& path) {
    std::error_code ignored;
    std::filesystem::create_directories(dir_of(path), ignored);
}

/// Renames to `to` or to a free name of its series.
Result<std::string> rename_to_free_name(const std::string& from, const std::string& to) {
    constexpr int most_attempts = 100;
    Status renamed = Done{};
    for (int attempt = 0; attempt < most_attempts; ++attempt) {
        const std::string dir = dir_of(to);
        const std::string target = join(dir, unique_name(dir, name_of(to)));
        renamed = rename_new(from, target);
        if (renamed) return target;
        if (renamed.error().code != ErrorCode::exists) break;
    }
    return renamed.error();
}

}  // namespace

Result<std::string> copy_to_free_name(const std::string& from, const std::string& to, const CopyWatch& watch) {
    make_directories_above(to);
    const Result<MappedFile> source = MappedFile::open(from);
    if (!source) return source.error();
    Result<AtomicFile> copy = AtomicFile::create_like(to, *source);
    if (!copy) return copy.error();
    const Result<std::uint64_t> copied = copy->copy(*source, 0, source->bytes().size(), watch);
    if (!copied) return copied.error();
    if (*copied != source->bytes().size() || source->changed()) return changed_while_read();
    copy->take_time(*source);
    return copy->publish(OnCollision::choose_name, Durability::flushed);
}

Result<std::string> move_to_free_name(const std::string& from, const std::string& to, const CopyWatch& watch) {
    make_directories_above(to);
    const std::optional<FileStamp> before = stamp_of(from);
    if (!before) return Error{ErrorCode::unsupported, 0, "Not a regular file"};
    Result<std::string> renamed = rename_to_free_name(from, to);
    if (renamed) return renamed;
    Result<std::string> copied = copy_to_free_name(from, to, watch);
    if (!copied) return copied;
    const bool is_unchanged = stamp_of(from) == before;
    if (is_unchanged && remove_file(from)) return copied;
    remove_file(*copied);
    return is_unchanged ? renamed.error() : changed_while_read();
}

}  // namespace quill::files
