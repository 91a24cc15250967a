#include "decoder/mime_wrap.h"

#include "decoder/joined_fields.h"
#include "files/atomic_file.h"
#include "files/mapped_file.h"

#include <algorithm>
#include <optional>
#include <utility>

namespace quill::decoder {
namespace {

constexpr std::string_view line_end = "\r\n";
constexpr std::string_view line_break_tag = "<BR>";
constexpr std::size_t longest_header_line = 50;  ///< a longer line counts as encoded text

bool put_line(std::string_view line, const Sink& out) {
    return out(line) && out(line_end);
}

/// Returns the name escaped for the quotes of a header parameter (RFC 2822 3.2.5).
std::string quoted_content(std::string_view name) {
    std::string content;
    for (const char c : name) {
        if (c == '"' || c == '\\') content += '\\';
        const auto byte = static_cast<unsigned char>(c);
        content += byte < ' ' || byte == 0x7F ? '_' : c;
    }
    return content;
}

constexpr std::size_t step = std::size_t{1} << 18;  ///< bytes of a piece that are processed at a time

/// Releases the bytes of `file` before `end`, if it points into them.
void release_before(const files::MappedFile& file, const char* end) {
    const std::string_view bytes = file.bytes();
    const std::less_equal<> not_behind;
    if (not_behind(bytes.data(), end) && not_behind(end, bytes.data() + bytes.size())) {
        file.release_before(static_cast<std::size_t>(end - bytes.data()));
    }
}

/// Collects pieces of the mapped `input`, and others, into larger writes, and releases what is written. Stops after a
/// write that returns false.
class Collector {
  public:
    Collector(const Sink& write, const files::MappedFile& input) : write_(write), input_(input) {
        buffer_.reserve(step);
    }

    bool append(std::string_view piece) {
        while (!piece.empty() && !ended_) {
            const std::size_t n = std::min(piece.size(), step - buffer_.size());
            buffer_.append(piece.substr(0, n));
            release_before(input_, piece.data() + n);
            piece.remove_prefix(n);
            if (buffer_.size() == step) flush();
        }
        return !ended_;
    }

    void flush() {
        ended_ = ended_ || !write_(buffer_);
        buffer_.clear();
    }

  private:
    const Sink& write_;
    const files::MappedFile& input_;
    std::string buffer_;
    bool ended_ = false;
};

/// Passes the rewriting of `text` to `write`, in large pieces.
Status rewrite(const TextFile& text, const Rewriting& rewriting, const std::function<Status(std::string_view)>& write,
               const OnRewritten& on_progress) {
    Status failure = Done{};
    std::uint64_t written = 0;
    const Sink put = [&](std::string_view piece) {
        failure = write(piece);
        written += piece.size();
        const bool stopped = on_progress && !on_progress(written, text.bytes().size());
        if (failure && stopped) failure = Error{ErrorCode::cancelled, 0, "Stopped"};
        return failure.ok();
    };
    Collector collector(put, text.file());
    rewriting(text.source(), [&](std::string_view piece) { return collector.append(piece); });
    collector.flush();
    if (!failure) return failure;
    if (text.file().cut_short()) return Error{ErrorCode::io, 0, "The file became shorter while it was read"};
    return Done{};
}

}  // namespace

void rewrap(const text::Source& text, const Sink& out) {
    constexpr int most_lines_of_a_field = 2;
    text::Reader ahead(text);
    JoinedFields unwritten(ahead);
    std::size_t carry = 0;  // characters that `ahead` has read and `unwritten` has not
    while (const std::optional<std::string_view> field = next_trimmed_field(ahead)) {
        carry += field->size();
        for (int lines = 0; lines < most_lines_of_a_field && carry >= base64_line_length; ++lines) {
            if (!unwritten.line(base64_line_length, out)) return;
            carry -= base64_line_length;
        }
    }
    unwritten.line(carry, out);
}

void write_base64_header(std::string_view name, const Sink& out) {
    const std::string content = quoted_content(name);
    const bool wanted = put_line("Content-Type: application\\octet-stream; name=\"" + content + "\"", out) &&
                        put_line("Content-Transfer-Encoding: Base64", out) &&
                        put_line("Content-Disposition: attachment; filename=\"" + content + "\"", out);
    if (wanted) put_line("", out);
}

void copy_from_first_long_line(const text::Source& text, const Sink& out) {
    text::Reader reader(text);
    bool copying = false;
    while (const std::optional<std::string_view> line = reader.line()) {
        copying = copying || line->size() > longest_header_line;
        if (copying && !put_line(*line, out)) return;
    }
}

void break_lines_at_tags(const text::Source& text, const Sink& out) {
    text::Reader reader(text);
    while (std::optional<std::string_view> line = reader.line()) {
        for (std::size_t at = line->find(line_break_tag); at != line->npos; at = line->find(line_break_tag)) {
            if (!put_line(line->substr(0, at), out)) return;
            line->remove_prefix(at + line_break_tag.size());
        }
        if (!put_line(*line, out)) return;
    }
}

void drop_tags_at_line_ends(const text::Source& text, const Sink& out) {
    text::Reader reader(text);
    while (std::optional<std::string_view> line = reader.line()) {
        if (line->ends_with(line_break_tag)) line->remove_suffix(line_break_tag.size());
        if (!put_line(*line, out)) return;
    }
}

Result<std::string> write_rewritten(const std::string& input, const std::string& output, const Rewriting& rewriting,
                                    const OnRewritten& on_progress) {
    const Result<TextFile> text = TextFile::open(input);
    if (!text) return text.error();
    Result<files::AtomicFile> file = files::AtomicFile::create(output);
    if (!file) return file.error();
    const auto write = [&](std::string_view piece) -> Status {
        return file->write(piece) ? Status(Done{}) : Status(file->error());
    };
    const Status written = rewrite(*text, rewriting, write, on_progress);
    if (!written) return written.error();
    return file->publish(files::OnCollision::choose_name);
}

Result<files::TemporaryFile> rewritten_copy(const TextFile& text, const Rewriting& rewriting,
                                            const OnRewritten& on_progress) {
    Result<files::TemporaryFile> file = files::TemporaryFile::create();
    if (!file) return file;
    const auto write = [&](std::string_view piece) { return file->write(piece); };
    const Status written = rewrite(text, rewriting, write, on_progress);
    if (!written) return written.error();
    return file;
}

bool holds_rewriting(const std::string& path, const std::string& input, const Rewriting& rewriting) {
    const Result<files::MappedFile> there = files::MappedFile::open(path);
    const Result<TextFile> text = TextFile::open(input);
    if (!there || !text) return false;
    std::string_view rest = there->bytes();
    const auto is_next = [&](std::string_view piece) {
        while (!piece.empty()) {
            const std::string_view slice = piece.substr(0, step);
            if (!rest.starts_with(slice)) return false;
            rest.remove_prefix(slice.size());
            piece.remove_prefix(slice.size());
            release_before(*there, rest.data());
            release_before(text->file(), piece.data());
        }
        return true;
    };
    bool same = true;
    rewriting(text->source(), [&](std::string_view piece) { return same = is_next(piece); });
    return same && rest.empty();
}

}  // namespace quill::decoder
