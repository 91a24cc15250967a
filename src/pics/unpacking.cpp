#include "pics/unpacking.h"

#include <utility>

namespace quill::pics {
namespace {

using files::AtomicFile;
using files::OnCollision;

Error cut_while_read() {
    return {ErrorCode::io, 0, "The album was cut while it was read"};
}

}  // namespace

Result<Unpacked> unpack_picture(const Album& album, const Entry& entry, const std::string& path, const Watch& watch,
                                const FindCopy& find_copy, files::LastNumbers* last_numbers) {
    if (entry.size == 0 && entry.verdict != report::Verdict::whole) {
        return Error{ErrorCode::bad_input, entry.offset, "Nothing of the picture is there"};
    }
    Result<AtomicFile> file = AtomicFile::create(path);
    if (!file) return file.error();
    const Result<std::uint64_t> copied = file->copy(album.file(), entry.offset, entry.size, watch);
    if (!copied) return copied.error();
    if (*copied != entry.size) return cut_while_read();
    if (find_copy) {
        if (std::string copy = find_copy(*file); !copy.empty()) return Unpacked{std::move(copy), true};
    }
    Result<std::string> published = file->publish(OnCollision::choose_name, files::Durability::cached, last_numbers);
    if (!published) return published.error();
    return Unpacked{*std::move(published), false};
}

Result<std::string> unpack_thumbnail(const Album& album, const Entry& entry, const std::string& path) {
    if (!entry.thumbnail_at) return Error{ErrorCode::bad_argument, 0, "The album has no thumbnails"};
    Result<AtomicFile> file = AtomicFile::create(path);
    if (!file) return file.error();
    const Result<std::uint64_t> copied = file->copy(album.file(), *entry.thumbnail_at, thumbnail_size, {});
    if (!copied) return copied.error();
    return file->publish(OnCollision::choose_name);
}

}  // namespace quill::pics
