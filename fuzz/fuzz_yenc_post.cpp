// The lines and the data of a yEnc post: the kernels against their reference, in pieces and whole, and the checksums.
#include "checksum/checksum.h"
#include "codec/yenc/yenc_post.h"

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <vector>

namespace {

using namespace quill::codec;

std::string decode_with_reference(std::string_view text, const yenc::Post& post, bool dotted) {
    const yenc::Rules rules = dotted ? yenc::Rules::draft_dotted : yenc::Rules::draft;
    std::string_view data = text.substr(post.data_begin, post.data_end - post.data_begin);
    std::string out;
    unsigned char previous = '\n';
    while (!data.empty()) {
        std::vector<char> room(yenc::decoded_bound(data.size()));
        const yenc::Progress progress = yenc::decode_reference(rules, data, previous, true, room.data());
        out.append(room.data(), progress.written);
        data.remove_prefix(progress.read);
        if (!progress.ended) break;
        // A keyword line among the data: skipped to its end.
        data.remove_prefix(std::min(data.find_first_of("\r\n"), data.size()));
        const std::size_t end = data.starts_with("\r\r\n") ? 3 : data.starts_with("\r\n") ? 2 : 1;
        data.remove_prefix(std::min(end, data.size()));
        previous = '\n';
    }
    const auto stated = post.end ? std::nullopt : post.stated_size();
    return stated ? out.substr(0, *stated) : out;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
    const std::string text = "=ybegin line=128 " + std::string(reinterpret_cast<const char*>(bytes), size);
    const auto post = yenc::read_post(text);
    if (!post) return 0;
    if (post->data_begin > post->data_end || post->data_end > text.size()) std::abort();
    for (const bool dotted : {false, true}) {
        std::string out;
        std::size_t last = post->data_begin;
        const auto data = yenc::decode_data(text, *post, dotted, [&](std::string_view piece, std::size_t read_to) {
            if (read_to < last || read_to > post->data_end) std::abort();
            last = read_to;
            out += piece;
            return true;
        });
        if (!data || out != decode_with_reference(text, *post, dotted)) std::abort();
        if (data->size != out.size() || data->crc != quill::crc32(0, out)) std::abort();
        if (yenc::verify(*post, *data).vouched_for && !post->end) std::abort();
    }
    yenc::dots_look_added(text, *post);
    return 0;
}
