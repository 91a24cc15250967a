#include "codec/writing/encode.h"

#include "codec/binhex/binhex_write.h"
#include "codec/uu/uu_write.h"
#include "codec/writing/encode_output.h"
#include "codec/writing/mime_write.h"
#include "codec/yenc/yenc_write.h"
#include "files/directory.h"
#include "files/path.h"
#include "files/unfinished.h"
#include "text/ascii.h"
#include "text/utf8.h"

#include <algorithm>
#include <array>

namespace quill::codec {
namespace {

constexpr std::uint64_t most_parts = 99'999;

constexpr std::array<OutputFormat, 5> formats{{
    // name, extension, code, line, line limit, line unit, part unit, CRC, writer
    {"uue", "UUE", 1, 61, 0, 1, 45, false, write_uue},
    {"mime", "MME", 2, 76, 996, 4, 0, false, write_mime},
    {"binhex", "HQX", 3, 64, 0, 1, 0, false, write_binhex},
    {"xxe", "XXE", 4, 61, 0, 1, 0, false, write_xxe},
    {"yenc", "ync", 0, 128, 997, 1, 1, true, write_yenc},
}};

/// Returns the file's name in UTF-8, without control characters, which would end a header line or be hidden in it.
std::string header_name(const std::string& path) {
    std::string name = text::to_utf8(files::name_of(path));
    for (char& c : name) {
        if (static_cast<unsigned char>(c) < ' ' || c == '\x7f') c = '_';
    }
    return name;
}

Status check_options(const OutputFormat& format, const EncodeOptions& options) {
    const auto refused = [](std::string text) { return Error{ErrorCode::bad_argument, 0, std::move(text)}; };
    if (options.line_length != 0) {
        if (format.line_limit == 0) return refused("the length of the lines is fixed in this format");
        if (options.line_length > format.line_limit || options.line_length % format.line_unit != 0) {
            return refused("lines are at most " + std::to_string(format.line_limit) + " characters long" +
                           (format.line_unit == 1 ? "" : ", a multiple of " + std::to_string(format.line_unit)));
        }
    }
    if (options.part_size != 0 && format.part_unit == 0) return refused("this format has no parts");
    if (options.part_size != 0 && options.part_size < format.part_unit) {
        return refused("a part holds at least " + std::to_string(format.part_unit) + " bytes");
    }
    if (options.crc && !format.takes_crc) return refused("a CRC can be asked for with yEnc only");
    return Done{};
}

/// Returns the bytes of a file of `size` for one output.
std::uint64_t part_size(std::uint64_t size, const OutputFormat& format, const EncodeOptions& options) {
    return options.part_size == 0 ? size : options.part_size / format.part_unit * format.part_unit;
}

Error is_taken(const std::string& path) {
    return {ErrorCode::exists, 0, "\"" + path + "\" is there already"};
}

/// Writes one output and returns the path that it got.
Result<std::string> write_piece(const EncodePiece& piece, const files::MappedFile& input, const std::string& path,
                                const OutputFormat& format, const EncodeOptions& options,
                                const OnProgress& on_progress) {
    Result<files::AtomicFile> file = files::AtomicFile::create_output(path);
    if (!file) return file.error();
    EncodeOutput output(*file, input, on_progress);
    const bool written = format.write(piece, options, output);
    if (output.cancelled()) return Error{ErrorCode::cancelled, 0, "stopped"};
    if (input.changed()) return files::changed_while_read();
    if (file->failed()) return file->error();
    if (!written) return Error{ErrorCode::limit, 0, "the file is too large for this format"};
    Result<std::string> published = file->publish(options.on_collision);
    if (!published && published.error().code == ErrorCode::exists) return is_taken(path);
    return published;
}

/// Returns true if an output called `path` would replace another file.
bool would_replace(const std::string& path) {
    return files::exists(path) && !files::is_special(path);
}

}  // namespace

std::string name_at_line_end(std::string_view name) {
    const std::string_view inside = text::trim(name);
    const bool has_quotes = inside.size() > 1 && inside.front() == '"' && inside.back() == '"';
    return has_quotes ? '"' + std::string(inside) + '"' : std::string(name);
}

bool EncodeOutput::used(std::uint64_t offset) {
    input_.release_before(offset);
    if (on_progress_ && !on_progress_(offset, input_.bytes().size())) cancelled_ = true;
    return !cancelled_;
}

std::span<const OutputFormat> output_formats() {
    return formats;
}

const OutputFormat* output_format(std::string_view name) {
    for (const OutputFormat& format : formats) {
        if (format.name == name) return &format;
    }
    return nullptr;
}

const OutputFormat* output_format(std::int32_t code) {
    for (const OutputFormat& format : formats) {
        if (code != 0 && format.code == code) return &format;
    }
    return nullptr;
}

std::string default_output_path(const OutputFormat& format, std::string_view path) {
    if (format.code == 0) {
        path.remove_suffix(std::min(path.size(), format.extension.size()));
        return std::string(path).append(format.extension);
    }
    const std::size_t dot = path.find('.');
    return std::string(path.substr(0, dot == std::string_view::npos ? 0 : dot + 1)).append(format.extension);
}

std::string part_path(const std::string& output, std::uint64_t number, std::uint64_t count) {
    if (count == 1) return output;
    const std::string name = files::name_of(output);
    const std::size_t extension = files::extension_at(name);
    std::string digits = std::to_string(number);
    digits.insert(0, std::to_string(count).size() - digits.size(), '0');
    return files::join(files::dir_of(output), name.substr(0, extension) + '.' + digits + name.substr(extension));
}

Result<std::vector<std::string>> output_paths(const std::string& output, std::uint64_t size, const OutputFormat& format,
                                              const EncodeOptions& options) {
    if (const Status checked = check_options(format, options); !checked) return checked.error();
    const std::uint64_t part = part_size(size, format, options);
    const std::uint64_t count = size <= part ? 1 : (size - 1) / part + 1;
    if (count > most_parts) return Error{ErrorCode::limit, 0, "that would make more than 99999 parts"};
    std::vector<std::string> paths;
    for (std::uint64_t number = 1; number <= count; ++number) paths.push_back(part_path(output, number, count));
    return paths;
}

Result<std::vector<std::string>> encode_file(const std::string& input_path, const std::string& output_path,
                                             const OutputFormat& format, const EncodeOptions& options,
                                             const OnProgress& on_progress) {
    const Result<files::MappedFile> input = files::MappedFile::open(input_path);
    if (!input) return input.error();
    const std::uint64_t size = input->bytes().size();
    Result<std::vector<std::string>> paths = output_paths(output_path, size, format, options);
    if (!paths) return paths;
    if (std::any_of(paths->begin(), paths->end(),
                    [&](const std::string& path) { return files::same_file(input_path, path); })) {
        return Error{ErrorCode::bad_argument, 0, "the output would replace the input itself"};
    }
    if (options.on_collision == files::OnCollision::fail) {
        const auto taken = std::find_if(paths->begin(), paths->end(), would_replace);
        if (taken != paths->end()) return is_taken(*taken);
    }
    const std::string name = header_name(input_path);
    std::vector<files::Unfinished> parts;
    const std::uint64_t part = part_size(size, format, options);
    for (std::uint64_t i = 0; i < paths->size(); ++i) {
        const EncodePiece piece{name, input->bytes(), i * part, std::min((i + 1) * part, size), i + 1, paths->size()};
        const bool is_new = !files::exists((*paths)[i]);
        Result<std::string> written = write_piece(piece, *input, (*paths)[i], format, options, on_progress);
        if (!written) return written.error();
        if (is_new) parts.emplace_back(*written);
        (*paths)[i] = *std::move(written);
    }
    for (files::Unfinished& written : parts) written.finish();
    return paths;
}

}  // namespace quill::codec
