#include "archive/methods/methods.h"

#include <algorithm>
#include <archive.h>
#include <archive_entry.h>
#include <string>

namespace quill::archive {
namespace {

constexpr std::size_t most_input = 256U << 20U;
constexpr std::uint16_t method_number = 98;

struct FreeReader {
    void operator()(::archive* reader) const { archive_read_free(reader); }
};

/// Puts `value` into `bytes` at `at`, lowest byte first.
void put(std::string& bytes, std::size_t at, std::size_t width, std::uint64_t value) {
    for (std::size_t i = 0; i < width; ++i) bytes[at + i] = static_cast<char>(value >> 8 * i);
}

/// Returns the local header (APPNOTE 4.3.7) of a member "x" whose sizes are set later.
std::string local_header() {
    std::string header("PK\3\4");
    header.resize(30);
    put(header, 8, 2, method_number);
    put(header, 26, 2, 1);
    return header + "x";
}

/// Method 98, PPMd var. I, by libarchive, which reads it only in archives: collects the stream after a header of our
/// own and lets libarchive read that. Accepts input to its end, up to 256 MiB.
class Ppmd final : public Decompressor {
  public:
    Step step(std::string_view in, std::span<char> out) override {
        if (!in.empty()) return collect(in);
        if (!reader_ && !open()) return {StreamState::broken};
        while (block_.empty()) {
            if (!read_block()) return {ended_ ? StreamState::ended : StreamState::broken};
        }
        const std::size_t size = std::min(block_.size(), out.size());
        std::copy_n(block_.data(), size, out.data());
        block_.remove_prefix(size);
        return {StreamState::running, 0, size};
    }

  private:
    Step collect(std::string_view in) {
        if (in.size() > most_input - std::min(most_input, input_.size())) return {StreamState::too_large};
        input_.append(in);
        return {StreamState::running, in.size(), 0};
    }

    bool open() {
        constexpr std::size_t packed_size_at = 18;
        put(input_, packed_size_at, 4, input_.size() - header_size_);
        reader_.reset(archive_read_new());
        // Our callers compare its content with the true header's numbers, not with this one's.
        ::archive_entry* entry = nullptr;
        return reader_ && archive_read_support_format_zip_streamable(reader_.get()) == ARCHIVE_OK &&
               archive_read_set_options(reader_.get(), "zip:ignorecrc32") == ARCHIVE_OK &&
               archive_read_open_memory(reader_.get(), input_.data(), input_.size()) == ARCHIVE_OK &&
               archive_read_next_header(reader_.get(), &entry) == ARCHIVE_OK;
    }

    /// Reads the next block; returns false at the end of the stream and if it is broken.
    bool read_block() {
        const void* data = nullptr;
        std::size_t size = 0;
        la_int64_t offset = 0;
        const int result = archive_read_data_block(reader_.get(), &data, &size, &offset);
        ended_ = result == ARCHIVE_EOF;
        // A warning means that the sizes differ from the header's.
        if (result != ARCHIVE_OK && result != ARCHIVE_WARN) return false;
        block_ = {static_cast<const char*>(data), size};
        return true;
    }

    std::string input_ = local_header();
    std::size_t header_size_ = input_.size();
    std::unique_ptr<::archive, FreeReader> reader_;
    std::string_view block_;  // remaining output
    bool ended_ = false;
};

}  // namespace

DecompressorPtr make_ppmd(const StreamInfo&) {
    return std::make_unique<Ppmd>();
}

}  // namespace quill::archive
