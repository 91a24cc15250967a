// The kernels against their scalar references and against memcpy, in GB of encoded text a second (decoders, checksums)
// or of plain data (encoders). The texts fit the second cache, so the kernel is measured and not the memory.

#include "checksum/checksum.h"
#include "codec/base64/sixbit.h"
#include "codec/binhex/binhex_runs.h"
#include "codec/input/lines.h"
#include "codec/uu/alphabets.h"
#include "codec/uu/uu.h"
#include "codec/yenc/yenc.h"
#include "simd/simd_dispatch.h"

#include <benchmark/benchmark.h>

#include <cstdint>
#include <cstring>
#include <functional>
#include <random>
#include <string>
#include <string_view>

namespace {

using namespace quill::codec;

constexpr std::size_t data_size = std::size_t{256} * 1024;
constexpr std::size_t mime_line = 76;
constexpr std::size_t yenc_line = 128;

const std::string& data() {
    static const std::string bytes = [] {
        std::mt19937 random(1);
        std::string result(data_size, '\0');
        for (char& c : result) c = static_cast<char>(random() & 0xFFU);
        return result;
    }();
    return bytes;
}

std::string base64_text() {
    std::string text(sixbit::encoded_size(data().size(), mime_line), '\0');
    sixbit::encode_base64(data(), mime_line, text.data());
    text.resize(text.find('='));
    return text;
}

/// Returns the Base64 text in BinHex's characters and lines of 64.
std::string binhex_text() {
    std::string text;
    for (const char c : base64_text()) {
        const std::size_t value = base64_characters.find(c);
        if (value != std::string_view::npos) text += binhex_characters[value];
        if (text.size() % 65 == 64) text += '\r';
    }
    return text;
}

std::string uu_text(uu::Alphabet alphabet) {
    std::string text(uu::encoded_size(data().size()), '\0');
    uu::encode_lines(alphabet, data(), text.data());
    return text;
}

std::string yenc_text() {
    yenc::Column column;
    std::string text(yenc::encoded_bound(data().size(), yenc_line), '\0');
    text.resize(yenc::encode(data(), yenc_line, column, text.data()));
    return text;
}

/// One call of a kernel on all of `in`.
using Run = std::function<void(std::string_view in, char* out)>;

void add(const std::string& name, std::string in, Run run) {
    benchmark::RegisterBenchmark(name.c_str(), [in = std::move(in), run = std::move(run)](benchmark::State& state) {
        std::string out(2 * in.size() + 4096, '\0');
        for (auto _ : state) {
            run(in, out.data());
            benchmark::ClobberMemory();
        }
        state.SetBytesProcessed(static_cast<std::int64_t>(state.iterations()) * static_cast<std::int64_t>(in.size()));
    });
}

/// Adds `run` with the kernel on each target of this processor.
void add_on_targets(const std::string& name, const std::string& in, const Run& run) {
    for (const quill::simd::Target target : quill::simd::available_targets()) {
        if (target == quill::simd::Target::reference) continue;
        add(name + "/" + std::string(quill::simd::name_of(target)), in,
            [run, target](std::string_view text, char* out) {
                quill::simd::choose_target(target);
                run(text, out);
            });
    }
}

void add_sixbit(const std::string& name, sixbit::Alphabet alphabet, const std::string& text) {
    add_on_targets(name, text, [alphabet](std::string_view in, char* out) {
        sixbit::State state;
        sixbit::decode(alphabet, in, out, state);
    });
    add(name + "/reference", text, [alphabet](std::string_view in, char* out) {
        sixbit::State state;
        sixbit::decode_reference(alphabet, in, out, state);
    });
}

void add_uu(const std::string& name, uu::Alphabet alphabet) {
    add_on_targets(name + "_decode", uu_text(alphabet),
                   [alphabet](std::string_view in, char* out) { uu::decode_lines(alphabet, in, out); });
    add(name + "_decode/reference", uu_text(alphabet),
        [alphabet](std::string_view in, char* out) { uu::decode_lines_reference(alphabet, in, out); });
    add_on_targets(name + "_encode", data(),
                   [alphabet](std::string_view in, char* out) { uu::encode_lines(alphabet, in, out); });
    add(name + "_encode/reference", data(),
        [alphabet](std::string_view in, char* out) { uu::encode_lines_reference(alphabet, in, out); });
}

void add_yenc() {
    using yenc::Rules;
    const std::pair<const char*, Rules> rules[] = {
        {"plain", Rules::plain}, {"dotted", Rules::dotted}, {"draft_dotted", Rules::draft_dotted}};
    for (const auto& [name, rule] : rules) {
        add_on_targets(std::string("yenc_decode_") + name, yenc_text(),
                       [rule = rule](std::string_view in, char* out) { yenc::decode(rule, in, '\n', true, out); });
    }
    add("yenc_decode_plain/reference", yenc_text(),
        [](std::string_view in, char* out) { yenc::decode_reference(Rules::plain, in, '\n', true, out); });
    add_on_targets("yenc_encode", data(), [](std::string_view in, char* out) {
        yenc::Column column;
        yenc::encode(in, yenc_line, column, out);
    });
    add("yenc_encode/reference", data(), [](std::string_view in, char* out) {
        yenc::Column column;
        yenc::encode_reference(in, yenc_line, column, out);
    });
}

template <class Find>
Run each_line_end(Find find) {
    return [find](std::string_view in, char*) {
        for (std::size_t at = find(in, 0); at < in.size(); at = find(in, at + 1)) benchmark::DoNotOptimize(at);
    };
}

void add_bytes() {
    add("memcpy", data(), [](std::string_view in, char* out) { std::memcpy(out, in.data(), in.size()); });
    add_on_targets("line_ends_of_76", base64_text(), each_line_end(find_line_end));
    add("line_ends_of_76/reference", base64_text(), each_line_end(find_line_end_reference));
    add("crc32", data(), [](std::string_view in, char*) { benchmark::DoNotOptimize(quill::crc32(0, in)); });
    add("crc16_binhex", data(),
        [](std::string_view in, char*) { benchmark::DoNotOptimize(quill::crc16_binhex(0, in)); });
    add("binhex_runs", data(), [](std::string_view in, char* out) {
        binhex::RunState state;
        for (std::size_t capacity = 2 * in.size(); !in.empty();) {
            in.remove_prefix(binhex::decode_runs(in, out, capacity, state).read);
        }
    });
}

}  // namespace

int main(int argc, char** argv) {
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv)) return 1;
    add_bytes();
    add_sixbit("base64_decode", sixbit::Alphabet::base64, base64_text());
    add_on_targets("base64_encode", data(),
                   [](std::string_view in, char* out) { sixbit::encode_base64(in, mime_line, out); });
    add("base64_encode/reference", data(),
        [](std::string_view in, char* out) { sixbit::encode_base64_reference(in, mime_line, out); });
    add_sixbit("binhex_decode", sixbit::Alphabet::binhex, binhex_text());
    add_uu("uu", uu::Alphabet::uu);
    add_uu("xx", uu::Alphabet::xx);
    add_yenc();
    benchmark::RunSpecifiedBenchmarks();
}
