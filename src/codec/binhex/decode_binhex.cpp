#include "checksum/checksum.h"
#include "codec/base64/sixbit.h"
#include "codec/binhex/binhex.h"
#include "codec/binhex/binhex_rows.h"
#include "codec/binhex/binhex_runs.h"
#include "codec/recovery/decode_run.h"

#include <algorithm>
#include <array>
#include <optional>
#include <vector>

namespace quill::codec {
namespace {

constexpr std::size_t crc_size = 2;

/// Splits the decoded stream into header, data fork, CRC, resource fork, CRC.
class ForkSplitter {
  public:
    ForkSplitter(bool want_resource, Sink& sink) : want_resource_(want_resource), sink_(sink) {}

    void take(std::string_view stream, std::uint64_t at_input);
    bool done() const { return stage_ == Stage::done; }
    void end(std::uint64_t at_input);

  private:
    enum class Stage : unsigned char { header, fork, crc, done };

    void take_header(std::string_view& stream, std::uint64_t at_input);
    void take_fork(std::string_view& stream);
    void take_crc(std::string_view& stream, std::uint64_t at_input);
    bool wanted() const { return in_resource_ == want_resource_; }

    bool want_resource_;
    Sink& sink_;
    Stage stage_ = Stage::header;
    bool in_resource_ = false;
    std::string held_;  ///< an incomplete header or CRC
    std::uint32_t left_ = 0;
    std::uint32_t resource_size_ = 0;
    std::uint16_t crc_ = 0;
    bool header_agrees_ = false;
};

void ForkSplitter::take(std::string_view stream, std::uint64_t at_input) {
    while (!stream.empty() && stage_ != Stage::done) {
        if (stage_ == Stage::header) take_header(stream, at_input);
        if (stage_ == Stage::fork) take_fork(stream);
        if (stage_ == Stage::crc) take_crc(stream, at_input);
    }
}

void ForkSplitter::take_header(std::string_view& stream, std::uint64_t at_input) {
    const std::size_t n = std::min(stream.size(), binhex::longest_header - held_.size());
    held_ += stream.substr(0, n);
    const std::optional<binhex::Header> header = binhex::read_header(held_);
    if (!header) {
        stream.remove_prefix(n);
        if (held_.size() == binhex::longest_header) stage_ = Stage::done;
        return;
    }
    stream.remove_prefix(n - (held_.size() - header->size));
    held_.clear();
    header_agrees_ = header->crc_agrees;
    if (!header_agrees_) sink_.report(ProblemKind::bad_header_crc, at_input);
    left_ = header->data_size;
    resource_size_ = header->resource_size;
    stage_ = Stage::fork;
}

void ForkSplitter::take_fork(std::string_view& stream) {
    const std::string_view bytes = stream.substr(0, left_);
    if (wanted()) {
        crc_ = crc16_binhex(crc_, bytes);
        sink_.put(bytes);
    }
    left_ -= static_cast<std::uint32_t>(bytes.size());
    stream.remove_prefix(bytes.size());
    if (left_ == 0) stage_ = Stage::crc;
}

void ForkSplitter::take_crc(std::string_view& stream, std::uint64_t at_input) {
    const std::size_t n = std::min(stream.size(), crc_size - held_.size());
    held_ += stream.substr(0, n);
    stream.remove_prefix(n);
    if (held_.size() < crc_size) return;
    const auto stated =
        static_cast<std::uint16_t>(static_cast<unsigned char>(held_[0]) << 8U | static_cast<unsigned char>(held_[1]));
    held_.clear();
    if (wanted()) {
        if (stated != crc_)
            sink_.report(ProblemKind::bad_crc, at_input, "The checksum of the fork is wrong");
        else if (header_agrees_)
            sink_.prove();
        stage_ = Stage::done;
        return;
    }
    in_resource_ = true;
    left_ = resource_size_;
    stage_ = left_ == 0 ? Stage::crc : Stage::fork;
}

void ForkSplitter::end(std::uint64_t at_input) {
    if (stage_ != Stage::done) sink_.report(ProblemKind::cut_off, at_input);
}

class BinHexRun {
  public:
    BinHexRun(const Attachment& attachment, Body& body, Sink& sink)
        : body_(body),
          sink_(sink),
          forks_(attachment.resource_fork, sink),
          packed_(sixbit::decoded_bound(body.piece())),
          stream_(body.piece() + 512) {}

    void run();

  private:
    void expand(std::string_view packed);
    void take_foreign();

    Body& body_;
    Sink& sink_;
    ForkSplitter forks_;
    std::vector<char> packed_;
    std::vector<char> stream_;
    sixbit::State state_;
    binhex::RunState runs_;
    binhex::Rows rows_;
};

void BinHexRun::expand(std::string_view packed) {
    do {
        const binhex::Progress done = binhex::decode_runs(packed, stream_.data(), stream_.size(), runs_);
        packed.remove_prefix(done.read);
        forks_.take({stream_.data(), done.written}, body_.at());
    } while ((!packed.empty() || runs_.copies_left > 0) && !forks_.done() && !sink_.stopped());
}

/// Skips a single foreign character, or a whole line of other text that the scan left among the data.
void BinHexRun::take_foreign() {
    sink_.report(ProblemKind::bad_character, body_.at());
    body_.pass(1);
}

void BinHexRun::run() {
    while (!body_.at_end() && !body_.stopped() && !sink_.stopped() && !forks_.done()) {
        const std::string_view in = body_.ahead(body_.piece());
        const sixbit::Progress done = sixbit::decode(sixbit::Alphabet::binhex, in, packed_.data(), state_);
        expand({packed_.data(), done.written});
        rows_.take(in.substr(0, done.read));
        body_.pass(done.read);
        if (done.read < in.size() && !forks_.done()) take_foreign();
    }
    if (body_.stopped() || sink_.stopped()) return;
    const std::size_t left = sixbit::finish(packed_.data(), state_);
    if (!forks_.done()) expand({packed_.data(), left});
    forks_.end(body_.at());
    sink_.note_law(rows_.full_rows());
    if (rows_.uneven()) sink_.report(ProblemKind::bad_length, body_.at(), "A row has lost characters, or has too many");
}

}  // namespace

void decode_binhex(const Attachment& attachment, Body& body, Sink& sink) {
    if (!attachment.headless) BinHexRun(attachment, body, sink).run();
}

}  // namespace quill::codec
