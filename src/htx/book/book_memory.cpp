#include "htx/book/book_memory.h"

#include "checksum/md5.h"
#include "files/atomic_file.h"
#include "files/directory.h"
#include "files/mapped_file.h"
#include "files/path.h"

#include <algorithm>
#include <charconv>
#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <string_view>
#include <system_error>
#include <vector>

namespace quill::htx {
namespace {

constexpr std::size_t key_size = 32;
constexpr std::size_t longest_line = key_size + 3 * 21 + 1;

struct Line {
    std::string key;
    BookPlace place;
};

std::string key_of(const std::string& book) {
    constexpr std::string_view digits = "0123456789abcdef";
    Md5 md5;
    md5.add(files::resolved(book));
    std::string key;
    for (const unsigned char byte : md5.finish()) key.append(1, digits[byte / 16U]).append(1, digits[byte % 16U]);
    return key;
}

/// Takes a blank and a number from 0 to 2^32 off `text`.
std::optional<std::uint32_t> take_number(std::string_view& text) {
    if (!text.starts_with(' ')) return std::nullopt;
    std::uint32_t number = 0;
    const auto [end, error] = std::from_chars(text.data() + 1, text.data() + text.size(), number);
    if (error != std::errc()) return std::nullopt;
    text.remove_prefix(static_cast<std::size_t>(end - text.data()));
    return number;
}

std::optional<Line> parse(std::string_view text) {
    if (text.size() < key_size || text.substr(0, key_size).find_first_not_of("0123456789abcdef") != text.npos) {
        return std::nullopt;
    }
    Line line{std::string(text.substr(0, key_size)), {}};
    text.remove_prefix(key_size);
    const auto page = take_number(text), place = take_number(text), zoom = take_number(text);
    if (!page || !place || !zoom || !text.empty()) return std::nullopt;
    const auto bounded = std::clamp<std::uint32_t>(*zoom, least_zoom, most_zoom);
    line.place = {*page, *place, static_cast<int>(bounded)};
    return line;
}

std::vector<Line> read_lines(const std::string& file) {
    const Result<files::MappedFile> mapped = files::MappedFile::open(file);
    if (!mapped) return {};
    std::string_view rest = mapped->bytes().substr(0, most_books_remembered * longest_line);
    std::vector<Line> lines;
    while (!rest.empty()) {
        const std::size_t end = rest.find('\n');
        if (auto line = parse(rest.substr(0, end))) lines.push_back(std::move(*line));
        rest.remove_prefix(end == rest.npos ? rest.size() : end + 1);
    }
    return lines;
}

std::string written(const Line& line) {
    return line.key + ' ' + std::to_string(line.place.page) + ' ' + std::to_string(line.place.place) + ' ' +
           std::to_string(line.place.zoom) + '\n';
}

}  // namespace

std::string book_memory_file() {
    const char* const state = std::getenv("XDG_STATE_HOME");
    if (state != nullptr && *state == '/') return files::join(state, "quillbright/books");
    const char* const home = std::getenv("HOME");
    return home != nullptr && *home == '/' ? files::join(home, ".local/state/quillbright/books") : std::string();
}

std::optional<BookPlace> remembered_place(const std::string& file, const std::string& book) {
    const std::vector<Line> lines = read_lines(file);
    const std::string key = key_of(book);
    const auto line = std::find_if(lines.begin(), lines.end(), [&](const Line& each) { return each.key == key; });
    return line == lines.end() ? std::nullopt : std::optional(line->place);
}

bool remember_place(const std::string& file, const std::string& book, const BookPlace& place) {
    if (file.empty()) return false;
    std::error_code ignored;
    std::filesystem::create_directories(files::dir_of(file), ignored);
    std::vector<Line> lines = read_lines(file);
    const std::string key = key_of(book);
    std::erase_if(lines, [&](const Line& each) { return each.key == key; });
    lines.push_back({key, place});
    if (lines.size() > most_books_remembered) {
        lines.erase(lines.begin(), lines.end() - static_cast<std::ptrdiff_t>(most_books_remembered));
    }
    Result<files::AtomicFile> out = files::AtomicFile::create(file, files::Access::of_owner);
    if (!out) return false;
    for (const Line& line : lines) out->write(written(line));
    return out->publish(files::OnCollision::replace).ok();
}

}  // namespace quill::htx
