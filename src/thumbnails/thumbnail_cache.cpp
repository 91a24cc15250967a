#include "thumbnails/thumbnail_cache.h"

#include "checksum/md5.h"
#include "files/atomic_file.h"
#include "files/directory.h"
#include "files/mapped_file.h"
#include "files/path.h"
#include "thumbnails/png_file.h"

#include <algorithm>
#include <cctype>
#include <charconv>
#include <cstdlib>
#include <sys/stat.h>

namespace quill::thumbnails {
namespace {

constexpr int normal_side = 128, large_side = 256;
constexpr const char* failures = "fail/quillbright";

constexpr std::string_view address_key = "Thumb::URI", time_key = "Thumb::MTime";
constexpr std::string_view width_key = "Thumb::Image::Width", height_key = "Thumb::Image::Height";
constexpr std::string_view reason_key = "Description";

std::string hex(unsigned char byte, const char* digits) {
    return {digits[byte >> 4U], digits[byte & 0xFU]};
}

const char* folder_of(int side) {
    return side == normal_side ? "normal" : "large";
}

int number_in(std::string_view png, std::string_view key) {
    const std::string_view text = text_in(png, key).value_or(std::string_view());
    int value = 0;
    std::from_chars(text.data(), text.data() + text.size(), value);
    return std::max(value, 0);
}

/// Returns true if the PNG states that it is of the current version of this file.
bool is_of(std::string_view png, const ThumbnailCache::Subject& subject) {
    return text_in(png, address_key) == address_of(subject.path) &&
           text_in(png, time_key) == std::to_string(subject.modified);
}

/// Makes the missing directories of a cache, accessible only to the user.
void make_directories(const std::string& path) {
    constexpr mode_t of_owner = 0700;
    if (files::is_directory(path) || files::is_root(path)) return;
    make_directories(files::dir_of(path));
    mkdir(path.c_str(), of_owner);
}

void write(const std::string& path, const std::string& png) {
    make_directories(files::dir_of(path));
    Result<files::AtomicFile> file = files::AtomicFile::create(path, files::Access::of_owner);
    if (!file || !file->write(png)) return;
    files::remove_file(path);  // of an older file
    static_cast<void>(file->publish(files::OnCollision::fail));
}

/// Returns the one clear pixel of a mark.
platform::Pixels clear_pixel() {
    return {
        {1, 1}, 4, std::shared_ptr<const std::uint8_t>(new std::uint8_t[4]{}, std::default_delete<std::uint8_t[]>())};
}

}  // namespace

std::string user_thumbnails() {
    for (const auto& [variable, below] :
         {std::pair{"XDG_CACHE_HOME", "thumbnails"}, std::pair{"HOME", ".cache/thumbnails"}}) {
        const char* const value = std::getenv(variable);
        if (value != nullptr && *value == '/') return files::join(value, below);
    }
    return {};
}

std::string address_of(const std::string& path) {
    constexpr std::string_view plain = "-._~!$&'()*+,:=@/";
    std::string address = "file://";
    for (const char c : path) {
        const auto byte = static_cast<unsigned char>(c);
        const bool is_plain = byte < 0x80 && (std::isalnum(byte) != 0 || plain.find(c) != std::string_view::npos);
        address += is_plain ? std::string(1, c) : '%' + hex(byte, "0123456789ABCDEF");
    }
    return address;
}

std::string ThumbnailCache::file_of(const Subject& subject, const char* folder) const {
    Md5 sum;
    sum.add(address_of(subject.path));
    std::string name;
    for (const unsigned char byte : sum.finish()) name += hex(byte, "0123456789abcdef");
    return files::join(files::join(directory_, folder), name + ".png");
}

std::optional<ThumbnailCache::Kept> ThumbnailCache::find(const Subject& subject) const {
    if (directory_.empty()) return std::nullopt;
    const std::string thumbnail = file_of(subject, folder_of(subject.side));
    if (const auto png = files::MappedFile::open(thumbnail); png && is_of(png->bytes(), subject)) {
        return Kept{thumbnail, {}, {number_in(png->bytes(), width_key), number_in(png->bytes(), height_key)}};
    }
    const auto mark = files::MappedFile::open(file_of(subject, failures));
    if (!mark || !is_of(mark->bytes(), subject)) return std::nullopt;
    const std::string_view reason = text_in(mark->bytes(), reason_key).value_or("the file can't be read");
    return Kept{{}, std::string(reason), {}};
}

void ThumbnailCache::keep(const Subject& subject, const platform::Picture& picture) const {
    const bool is_size = subject.side == normal_side || subject.side == large_side;
    if (directory_.empty() || !is_size || subject.path.starts_with(files::join(directory_, ""))) return;
    std::vector<PngText> texts = {{address_key, address_of(subject.path)},
                                  {time_key, std::to_string(subject.modified)},
                                  {"Software", "quillbright"}};
    if (picture.state == platform::PictureState::failed) {
        texts.emplace_back(reason_key, picture.reason);
        write(file_of(subject, failures), png_of(clear_pixel(), texts));
    } else if (picture.state == platform::PictureState::whole) {
        texts.emplace_back(width_key, std::to_string(picture.original.width));
        texts.emplace_back(height_key, std::to_string(picture.original.height));
        write(file_of(subject, folder_of(subject.side)), png_of(picture.pixels, texts));
    }
}

}  // namespace quill::thumbnails
