#include "decoder/yenc_run.h"

#include "codec/checksum.h"
#include "codec/content_name.h"
#include "codec/disguise.h"
#include "codec/yenc.h"
#include "codec/yenc_post.h"
#include "decoder/new_files.h"
#include "decoder/yenc_text.h"
#include "files/atomic_file.h"
#include "files/directory.h"
#include "files/mapped_file.h"
#include "shell/main_window.h"
#include "text/ascii.h"
#include "text/reader.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <iterator>
#include <memory>
#include <optional>
#include <string_view>
#include <utility>
#include <vector>

namespace quill::decoder {
namespace {

namespace yenc = codec::yenc;
using files::OnCollision;

constexpr std::string_view header_mark = "=ybegi";
constexpr std::size_t shortest_tested_line = 8;
constexpr std::int64_t bar_length = 5055;              // twips
constexpr std::string_view nameless = "yenc-decoded";  // where nothing of the name stated can be a file's

/// A line that tells of a newsreader which doubles dots at line starts.
struct Signature {
    std::string_view line_begins;
    std::size_t at;  ///< where its name stands in the line, from 0
    std::string_view newsreader;
};

constexpr std::array signatures = {
    Signature{"x-newsre", 14, "forte agen"}, Signature{"x-newsre", 14, "yenc-power"},
    Signature{"x-newspo", 14, "forte agen"}, Signature{"x-newspo", 14, "yenc-power"},
    Signature{"user-age", 12, "thoth"},
};

bool is_signature(std::string_view line) {
    return std::any_of(signatures.begin(), signatures.end(), [&](const Signature& signature) {
        return text::starts_with_ignoring_case(line, signature.line_begins) && line.size() > signature.at &&
               text::starts_with_ignoring_case(line.substr(signature.at), signature.newsreader);
    });
}

/// What stands behind the last '=' of a header line, but for one at its very end.
std::string name_in(std::string_view header) {
    std::string_view name = header.substr(header.rfind('=', header.size() - 2) + 1);
    if (name.ends_with("  ")) name.remove_suffix(2);
    std::string safe = codec::plain_name(name);
    return safe.empty() ? std::string(nameless) : safe;
}

/// What the post whose header and data were read as told here states of itself, as far as that is seen.
yenc::Post stated_post(std::string_view bytes, std::size_t data_begin, std::size_t data_end, bool has_end) {
    yenc::Post post;
    text::Reader head(bytes.substr(0, data_begin));
    while (const auto line = head.line()) {
        if (const auto begin = yenc::parse_begin(*line)) post.begin = *begin;
        post.part = yenc::parse_part(*line);
    }
    post.data_begin = data_begin;
    post.data_end = data_end;
    if (!has_end) return post;
    const std::string_view tail = bytes.substr(data_end);
    post.end = yenc::parse_end(tail.substr(0, tail.find_first_of("\r\n")));
    return post;
}

codec::Outcome judge(const yenc::Post& post, const yenc::Data& data) {
    yenc::Verification verification = yenc::verify(post, data);
    codec::Outcome outcome;
    outcome.size = data.size;
    outcome.problems = std::move(verification.problems);
    if (post.is_part() && post.begin.size.value_or(data.size) > data.size) {
        outcome.problems.push_back(
            {codec::Grade::lost, "missing-part", post.data_end, data.size, "This is one part of a larger file"});
    }
    const auto has = [&](codec::Grade grade) {
        return std::any_of(outcome.problems.begin(), outcome.problems.end(),
                           [grade](const codec::Problem& problem) { return problem.grade == grade; });
    };
    if (std::optional<codec::Problem> disguise = codec::disguise_of(post.begin.name, post.data_begin)) {
        outcome.problems.push_back(std::move(*disguise));
    }
    if (has(codec::Grade::lost)) {
        outcome.verdict = codec::Verdict::incomplete;
    } else if (has(codec::Grade::damaged)) {
        outcome.verdict = codec::Verdict::damaged;
    } else {
        outcome.verdict = verification.vouched_for ? codec::Verdict::verified : codec::Verdict::whole;
    }
    return outcome;
}

void show_progress(shell::Context& context, std::size_t done, std::size_t input_size) {
    auto& w = context.windows.load<shell::swit>();
    w.Picture5.visible = true;
    w.Picture6.left = static_cast<int>(bar_length * static_cast<std::int64_t>(done) /
                                       static_cast<std::int64_t>(std::max<std::size_t>(input_size, 1)));
    context.platform.repaint(w);
}

/// Decodes the data of `input` into `output` by `rules` and tells what came of it.
codec::Outcome decode_into(shell::Context& context, const files::MappedFile& input, yenc::Rules rules,
                           files::AtomicFile& output) {
    const std::string_view bytes = input.bytes();
    AdaptedText text(bytes, static_cast<std::size_t>(context.session.DataStart));
    const std::size_t start = text.offset();
    std::vector<char> decoded;
    yenc::Data data;
    bool ended = false;
    while (!ended && !text.piece().empty()) {
        show_progress(context, text.offset() - start + 1, bytes.size());
        const std::string_view piece = text.piece();
        decoded.resize(std::max(decoded.size(), yenc::decoded_bound(piece.size())));
        const auto progress = yenc::decode(rules, piece, text.previous(), text.is_last(), decoded.data());
        const std::string_view out(decoded.data(), progress.written);
        data.crc = codec::crc32(data.crc, out);
        data.size += out.size();
        output.write(out);
        ended = progress.ended;
        text.advance(progress.read);
        input.release_before(text.offset());
    }
    return judge(stated_post(bytes, start, text.offset(), ended), data);
}

/// Decodes `path` and publishes the result under its name. The name that it got, or nullopt where that failed.
std::optional<std::string> decode_file(shell::Context& context, const std::string& path, yenc::Rules rules,
                                       OnCollision on_collision) {
    const std::string& name = context.session.YencName;
    const auto input = files::MappedFile::open(path);
    if (!input) return std::nullopt;
    auto& w = context.windows.load<shell::swit>();
    w.Label3.text = std::to_string(input->bytes().size());
    auto output = files::AtomicFile::create(name);
    if (!output) return std::nullopt;
    codec::Outcome outcome = decode_into(context, *input, rules, *output);
    if (input->cut_short()) return std::nullopt;
    const auto published = output->publish(on_collision);
    if (!published) return std::nullopt;
    w.Outcomes[*published] = std::move(outcome);
    return *published;
}

/// The name itself where no file with content has it, else the next of the row "x-a.jpg", "x-a-a.jpg" ...
std::string free_name(std::string name) {
    constexpr std::size_t extension = 4;
    while (files::exists(name) && files::file_size(name).value_or(1) != 0) {
        const std::size_t dot = name.size() < 2 ? std::string::npos : name.rfind('.', name.size() - 2);
        if (dot == std::string::npos) {
            name += "-a";
        } else {
            name = name.substr(0, dot) + "-a" + std::string(text::last(name, extension));
        }
    }
    return name;
}

void report_new_files(shell::swit& w) {
    const NewFiles found = find_new_files(w);
    if (found.change != Change::more_files) return;
    if (!found.names.empty()) w.pointer = controls::MousePointer::normal;
    show_results(w, found.names);
    rename_snapshots(w);
}

}  // namespace

void findfirst(shell::Context& context, std::string& path) {
    auto& w = context.windows.load<shell::swit>();
    w.visible = true;
    context.platform.repaint(w);
    const auto input = files::MappedFile::open(path);
    if (!input) return;
    text::Reader reader(input->bytes());
    long long& start = context.session.DataStart;
    start = 0;
    bool signature = false;
    while (const auto line = reader.line()) {
        start += static_cast<long long>(line->size()) + 2;
        if (line->size() < shortest_tested_line) continue;
        signature = signature || is_signature(*line);
        if (!line->starts_with(header_mark)) continue;
        context.session.YencName = name_in(*line);
        const auto next = reader.line();
        if (next && next->starts_with("=ypart")) start += static_cast<long long>(next->size()) + 2;
        const bool dotted = signature || context.session.CommandLine.starts_with('&');
        dotted ? getbytestoo(context, path) : getbytes(context, path);
        return;
    }
}

void getbytes(shell::Context& context, std::string& path) {
    auto& w = context.windows.load<shell::swit>();
    w.Picture5.left = 0;
    const std::string& directory = context.session.SelectedDir;
    w.File2.set_directory(directory);
    w.File3.set_directory(directory);
    w.File2.refresh();
    w.File3.refresh();
    const bool replaces = !files::same_file(context.session.YencName, path);
    const auto name =
        decode_file(context, path, yenc::Rules::plain, replaces ? OnCollision::replace : OnCollision::choose_name);
    if (name) {
        // The file that stood there before is gone, so the one of its name is new.
        std::vector<std::string> before = w.File2.items();
        std::erase(before, *name);
        w.File2.assign(std::move(before));
    }
    report_new_files(w);
}

void getbytestoo(shell::Context& context, std::string& path) {
    auto& w = context.windows.load<shell::swit>();
    std::string& name = context.session.YencName;
    name = free_name(name);
    decode_file(context, path, yenc::Rules::dotted,
                files::exists(name) ? OnCollision::replace : OnCollision::choose_name);
    report_new_files(w);
}

}  // namespace quill::decoder
