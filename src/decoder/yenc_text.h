#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace quill::decoder {

/// A text from some place on in pieces, as though each LF of Unix text were CR LF; other text as it is. A piece holds
/// what the last one left.
class AdaptedText {
  public:
    /// `start` counts in the text as adapted; a start behind its end is its end.
    AdaptedText(std::string_view bytes, std::size_t start);

    std::string_view piece() const {
        return unix_text_ ? std::string_view(adapted_) : bytes_.substr(at_, taken_ - at_);
    }
    /// Whether nothing comes behind this piece.
    bool is_last() const { return taken_ == bytes_.size(); }
    /// The byte before the piece; LF at the beginning of the text.
    unsigned char previous() const { return previous_; }

    /// Gives `n` bytes of the piece up and takes on more of the text.
    void advance(std::size_t n);

    /// Where the piece begins, in the bytes given.
    std::size_t offset() const;

  private:
    void fill();

    std::string_view bytes_;
    bool unix_text_;
    std::size_t at_ = 0;     ///< beginning of the piece in `bytes_`; not kept for Unix text
    std::size_t taken_ = 0;  ///< end of the piece in `bytes_`
    std::string adapted_;    ///< the piece, for Unix text
    unsigned char previous_ = '\n';
};

}  // namespace quill::decoder
