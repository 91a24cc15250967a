#include "decoder/headerless.h"

#include "decoder/headered_copy.h"
#include "decoder/naming_window.h"
#include "files/mapped_file.h"
#include "files/path.h"
#include "text/ascii.h"
#include "text/reader.h"

#include <array>
#include <string>
#include <string_view>

namespace quill::decoder {
namespace {

/// The beginning of Base64 text of a picture, and the naming window's hint for it.
struct Beginning {
    std::string_view characters;
    std::string_view hint;
};
constexpr std::array beginnings = {
    Beginning{"/9j", "It appears to be a Jpg file"},
    Beginning{"R0l", "It appears to be a Gif file"},
};

/// Returns true if the name ends in a dot and three or four more characters.
bool has_extension(std::string_view name) {
    const auto dot_before_last = [name](std::size_t n) { return name.size() > n && name[name.size() - n - 1] == '.'; };
    return dot_before_last(3) || dot_before_last(4);
}

std::string hint_for(const std::string& path) {
    const Result<files::MappedFile> file = files::MappedFile::open(path);
    if (!file) return {};
    const std::string_view field = text::Reader(file->bytes()).field().value_or("");
    for (const Beginning& beginning : beginnings) {
        if (field.starts_with(beginning.characters)) return std::string(beginning.hint);
    }
    return {};
}

}  // namespace

void nohead(shell::Context& context, int& length) {
    shell::Session& session = context.session;
    const auto line_length = static_cast<std::size_t>(length);
    const std::string name = files::name_of(session.EncodedPath);
    if (has_extension(name) && !text::ends_with_ignoring_case(name, ".mim")) {
        ask_for_headered_copy(context);
        static_cast<void>(write_headered_copy(context, name, line_length));  // on failure the unchanged file is used
        return;
    }
    session.NamingTaken = true;
    show_naming_window(context, hint_for(session.EncodedPath), line_length);
}

}  // namespace quill::decoder
