#include "decoder/text_file.h"

#include <utility>

namespace quill::decoder {
namespace {

/// Does the same as text::is_unix_text over the file, without keeping it in memory.
bool is_unix_text(const files::MappedFile& file) {
    constexpr std::size_t step = std::size_t{1} << 20;
    const std::string_view bytes = file.bytes();
    bool line_feeds = false;
    for (std::size_t at = 0; at < bytes.size(); at += step) {
        const std::string_view piece = bytes.substr(at, step);
        if (piece.find('\r') != piece.npos) return false;
        line_feeds = line_feeds || piece.find('\n') != piece.npos;
        file.release_before(at);
    }
    return line_feeds;
}

}  // namespace

Result<TextFile> TextFile::open(const std::string& path) {
    Result<files::MappedFile> file = files::MappedFile::open(path);
    if (!file) return file.error();
    return TextFile(*std::move(file));
}

TextFile::TextFile(files::MappedFile file) : file_(std::move(file)), unix_text_(is_unix_text(file_)) {}

}  // namespace quill::decoder
