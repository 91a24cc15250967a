#include "codec/yenc/yenc_post.h"

#include "checksum/checksum.h"
#include "codec/hex.h"
#include "codec/input/lines.h"
#include "codec/yenc/yenc_rows.h"
#include "text/ascii.h"

#include <algorithm>
#include <charconv>
#include <limits>
#include <memory>

namespace quill::codec::yenc {
namespace {

constexpr std::size_t longest_keyword_line = 4096;  // characters; the rest of a longer line is ignored
constexpr std::size_t piece_size = 256 * 1024;      // bytes of text decoded at a time

/// Returns the rest of `line` after `keyword` and a blank; nullopt if it does not begin with them.
std::optional<std::string_view> behind(std::string_view line, std::string_view keyword) {
    if (!line.starts_with(keyword)) return std::nullopt;
    line.remove_prefix(keyword.size());
    if (!line.empty() && line.front() != ' ' && line.front() != '\t') return std::nullopt;
    return line;
}

/// Returns the value of `key`, up to the next blank, in fields separated by blanks; nullopt if there is none.
std::optional<std::string_view> field(std::string_view fields, std::string_view key) {
    for (std::size_t at = fields.find(key); at != std::string_view::npos; at = fields.find(key, at + 1)) {
        const bool begins = at == 0 || fields[at - 1] == ' ' || fields[at - 1] == '\t';
        const std::size_t value = at + key.size();
        if (!begins || value == fields.size() || fields[value] != '=') continue;
        const std::string_view rest = fields.substr(value + 1);
        return rest.substr(0, rest.find_first_of(" \t"));
    }
    return std::nullopt;
}

std::optional<std::uint64_t> number(std::string_view fields, std::string_view key) {
    const std::optional<std::string_view> digits = field(fields, key);
    std::uint64_t value = 0;
    if (!digits) return std::nullopt;
    const char* const end = digits->data() + digits->size();
    const auto [read_to, error] = std::from_chars(digits->data(), end, value);
    if (error != std::errc() || read_to != end) return std::nullopt;
    return value;
}

std::string_view without_quotes(std::string_view name) {
    name = text::trim(name);
    if (name.size() >= 2 && name.front() == '"' && name.back() == '"') name = name.substr(1, name.size() - 2);
    return text::trim(name);
}

/// Returns the line at `at` without its end.
std::string_view line_at(std::string_view text, std::size_t at) {
    const std::string_view ahead = text.substr(at, longest_keyword_line);
    return ahead.substr(0, find_line_end(ahead, 0));
}

std::size_t next_line(std::string_view text, std::size_t at) {
    at = find_line_end(text, at);
    const std::string_view end = text.substr(at, 3);
    if (end == "\r\r\n") return at + 3;
    return at + (end.starts_with("\r\n") ? 2 : std::min<std::size_t>(end.size(), 1));
}

/// Returns the beginning of the last line of `text`, going back at most the length of a keyword line.
std::size_t last_line(std::string_view text) {
    const std::size_t end = text.find_last_not_of("\r\n");
    if (end == std::string_view::npos) return text.size();
    const std::size_t first = end > longest_keyword_line ? end - longest_keyword_line : 0;
    const std::size_t before = text.substr(first, end - first).find_last_of("\r\n");
    return before == std::string_view::npos ? text.size() : first + before + 1;
}

/// Returns a size that the post states for its data and that is not `size`, if there is one.
std::optional<std::uint64_t> wrong_size(const Post& post, std::uint64_t size) {
    const std::optional<std::uint64_t> stated[] = {
        post.stated_size(),
        post.end && !post.is_merged() ? post.end->size : std::nullopt,
        post.is_part() ? std::nullopt : post.begin.size,
    };
    for (const auto& one : stated) {
        if (one && *one != size) return one;
    }
    return std::nullopt;
}

}  // namespace

std::optional<std::uint32_t> parse_crc(std::string_view digits) {
    constexpr std::size_t digits_of_32_bits = 8;
    if (digits.empty() || digits.size() > 2 * digits_of_32_bits) return std::nullopt;
    std::uint32_t value = 0;
    for (const char c : digits) {
        if (hex_value(c) < 0) return std::nullopt;
        value = value << 4U | static_cast<std::uint32_t>(hex_value(c));
    }
    if (digits.size() <= digits_of_32_bits) return value;
    const std::string_view extension = digits.substr(0, digits.size() - digits_of_32_bits);
    const bool sign = std::all_of(extension.begin(), extension.end(), [&](char c) {
        return text::lower(c) == text::lower(extension[0]) && (c == '0' || text::lower(c) == 'f');
    });
    return sign ? std::optional(value) : std::nullopt;
}

std::optional<BeginLine> parse_begin(std::string_view line) {
    const std::optional<std::string_view> all = behind(line, "=ybegin");
    if (!all) return std::nullopt;
    std::size_t name_at = all->find(" name=");
    if (name_at == std::string_view::npos) name_at = all->find("\tname=");
    const std::string_view fields = all->substr(0, name_at);
    BeginLine begin;
    begin.part = number(fields, "part");
    begin.total = number(fields, "total");
    begin.line = number(fields, "line");
    begin.size = number(fields, "size");
    const bool named = name_at != std::string_view::npos;
    if (named) begin.name = without_quotes(all->substr(name_at + 6));
    if (!named && !begin.line && !begin.size) return std::nullopt;
    return begin;
}

std::optional<PartLine> parse_part(std::string_view line) {
    const std::optional<std::string_view> fields = behind(line, "=ypart");
    if (!fields) return std::nullopt;
    return PartLine{number(*fields, "begin"), number(*fields, "end")};
}

std::optional<EndLine> parse_end(std::string_view line) {
    const std::optional<std::string_view> fields = behind(line, "=yend");
    if (!fields) return std::nullopt;
    EndLine end;
    end.size = number(*fields, "size");
    end.unreadable_size = !end.size && field(*fields, "size");
    end.part = number(*fields, "part");
    const auto crc = [&](std::string_view key) -> std::optional<std::uint32_t> {
        std::optional<std::string_view> digits = field(*fields, key);
        if (!digits) return std::nullopt;
        if (digits->starts_with("0x") || digits->starts_with("0X")) digits->remove_prefix(2);
        const std::optional<std::uint32_t> value = parse_crc(*digits);
        if (!value) end.unreadable_crc = true;
        return value;
    };
    end.pcrc32 = crc("pcrc32");
    end.crc32 = crc("crc32");
    return end;
}

bool Post::is_merged() const {
    return begin.part && end && end->part && *begin.part != *end->part;
}

bool Post::is_part() const {
    return !is_merged() && (part || begin.part || begin.total.value_or(1) > 1);
}

std::optional<std::uint64_t> Post::stated_size() const {
    if (is_merged()) return begin.size;
    if (part && part->begin && part->end && *part->begin >= 1 && *part->end >= *part->begin - 1) {
        return *part->end - (*part->begin - 1);
    }
    if (end && end->size) return end->size;
    return is_part() ? std::nullopt : begin.size;
}

std::optional<std::uint64_t> Post::file_size() const {
    if (!is_part() || !begin.size || !part || begin.total.value_or(1) < 2) return begin.size;
    const bool of_part = part->begin && part->end && *part->end - *part->begin + 1 == *begin.size;
    const bool all_before_are_empty = begin.part == begin.total && part->begin == 1U;
    return of_part && !all_before_are_empty ? std::nullopt : begin.size;
}

std::optional<std::uint32_t> Post::file_crc() const {
    if (!is_part() || !end || !end->pcrc32 || end->pcrc32 == end->crc32) return std::nullopt;
    return end->crc32;
}

std::optional<std::uint32_t> Post::stated_crc() const {
    if (!end) return std::nullopt;
    if (is_merged()) return end->crc32;
    return end->pcrc32 || is_part() ? end->pcrc32 : end->crc32;
}

std::optional<Post> read_post(std::string_view text) {
    const std::optional<BeginLine> begin = parse_begin(line_at(text, 0));
    if (!begin) return std::nullopt;
    Post post;
    post.begin = *begin;
    post.data_begin = next_line(text, 0);
    post.part = parse_part(line_at(text, post.data_begin));
    if (post.part) post.data_begin = next_line(text, post.data_begin);
    post.data_end = std::max(last_line(text), post.data_begin);
    post.end = parse_end(line_at(text, post.data_end));
    if (!post.end) post.data_end = text.size();
    return post;
}

bool dots_look_added(std::string_view text, const Post& post) {
    const std::size_t most = std::min(piece_size, post.data_end - post.data_begin);
    bool found = false;
    for (std::size_t at = post.data_begin; at < post.data_end;) {
        const std::string_view piece = text.substr(at, std::min(most, post.data_end - at));
        const bool last = at + piece.size() == post.data_end;
        std::size_t line = at == post.data_begin ? 0 : find_line_beginning(piece, 0, ".");
        for (; line < piece.size(); line = find_line_beginning(piece, line, ".")) {
            if (piece[line] != '.' || (line + 1 == piece.size() && !last)) continue;
            if (!piece.substr(line).starts_with("..")) return false;
            found = true;
        }
        // The next piece begins with the last line end of this one, so that every line's beginning is seen.
        const std::size_t line_end = piece.find_last_of("\r\n");
        const bool has_line_end = line_end != std::string_view::npos && line_end > 0;
        at += has_line_end && !last ? line_end : piece.size();
    }
    return found;
}

namespace {

/// Returns true if a line of `piece`, from its byte `from`, begins with a dot; `before` is the byte before the piece.
bool has_dotted_line(std::string_view piece, std::size_t from, char before) {
    if (from >= piece.size()) return false;
    const char previous = from > 0 ? piece[from - 1] : before;
    if (piece[from] == '.' && (previous == '\n' || previous == '\r')) return true;
    std::size_t line = from;
    do line = find_line_beginning(piece, line, ".");
    while (line < piece.size() && piece[line] != '.');
    return line < piece.size();
}

}  // namespace

std::optional<Data> decode_data(std::string_view text, const Post& post, const AskDotted& dotted,
                                const TakeBytes& take) {
    Rules rules = Rules::draft;
    bool asked = false;
    std::size_t searched = 0;  // in the text, for lines that begin with a dot
    constexpr std::uint64_t no_limit = std::numeric_limits<std::uint64_t>::max();
    const std::uint64_t limit = post.end ? no_limit : post.stated_size().value_or(no_limit);
    const std::size_t most = std::min(piece_size, post.data_end - post.data_begin);
    const auto out = std::make_unique_for_overwrite<char[]>(decoded_bound(most));
    RowWatch rows(post);
    const bool watched = take && post.end && !post.stated_crc();
    Data data;
    std::size_t at = post.data_begin;
    char before = '\n';
    while (at < post.data_end && data.size < limit) {
        const std::string_view piece = text.substr(at, std::min(most, post.data_end - at));
        const bool last = at + piece.size() == post.data_end;
        if (!asked && has_dotted_line(piece, std::max(at, searched) - at, before)) {
            asked = true;
            if (dotted()) rules = Rules::draft_dotted;
        }
        searched = at + piece.size();
        const Progress progress = decode(rules, piece, static_cast<unsigned char>(before), last, out.get());
        const std::string_view bytes(out.get(), std::min<std::uint64_t>(progress.written, limit - data.size));
        data.crc = crc32(data.crc, bytes);
        data.size += bytes.size();
        if (progress.read > 0) before = piece[progress.read - 1];
        at += progress.read;
        if (watched) rows.take(piece.substr(0, progress.read));
        if (progress.ended) {
            rows.skip();
            at = std::min(next_line(text, at), post.data_end);
            before = '\n';
        }
        if (take && !take(bytes, at)) return std::nullopt;
    }
    data.even_rows = watched && rows.saw_even_rows();
    return data;
}

std::optional<Data> decode_data(std::string_view text, const Post& post, bool dotted, const TakeBytes& take) {
    return decode_data(
        text, post, [dotted] { return dotted; }, take);
}

bool agrees(const Post& post, const Data& data) {
    if (const auto crc = post.stated_crc()) return *crc == data.crc;
    const auto size = post.stated_size();
    return size && *size == data.size;
}

Verification verify(const Post& post, const Data& data) {
    Verification out;
    const auto problem = [&](ProblemKind kind, std::string text = {}) {
        out.problems.push_back({kind, post.data_end, {}, std::move(text)});
    };
    if (!post.end) {
        problem(ProblemKind::missing_end);
        return out;
    }
    // Some encoders state a part's own CRC as though it were the file's.
    const bool own_crc = post.is_part() && !post.stated_crc() && post.end->crc32 == data.crc;
    out.vouched_for = agrees(post, data) || own_crc;
    if (post.end->unreadable_crc) {
        out.vouched_for = false;
        problem(ProblemKind::bad_field, "The stated CRC is no number of 32 bits");
    }
    const std::optional<std::uint32_t> crc = post.stated_crc();
    const bool crc_agrees = own_crc || (crc && *crc == data.crc);
    out.crc_agrees = crc_agrees;
    if (const auto size = wrong_size(post, data.size)) {
        out.vouched_for = crc_agrees;
        problem(crc_agrees ? ProblemKind::size_differs : ProblemKind::bad_size,
                "The text states " + std::to_string(*size) + " bytes, and " + std::to_string(data.size) + " came out");
    }
    if (post.end->unreadable_size && !crc_agrees) {
        out.vouched_for = false;
        problem(ProblemKind::bad_size, "The stated size is not a number");
    }
    if (crc && *crc != data.crc) {
        problem(ProblemKind::bad_crc,
                "The text states the CRC " + hexadecimal(*crc) + ", and that of the bytes is " + hexadecimal(data.crc));
    }
    return out;
}

std::string hexadecimal(std::uint32_t crc) {
    std::string digits;
    for (unsigned shift = 32; shift > 0; shift -= 4) digits += "0123456789abcdef"[crc >> (shift - 4) & 0xFU];
    return digits;
}

}  // namespace quill::codec::yenc
