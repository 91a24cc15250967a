#pragma once

#include <cstdint>
#include <string>
#include <string_view>

/// The mail that a place in a text belongs to.
namespace quill::codec {

/// Fields of a mail's header (RFC 5322 3.6), as UTF-8 in one line each; empty if the header lacks them.
struct Origin {
    std::string from;
    std::string subject;
    std::string date;
    std::string message_id;

    bool operator==(const Origin&) const = default;
};

/// Finds the mails of places in one text, a mailbox or a single mail. Places that only increase cost one pass over the
/// text in all.
class OriginFinder {
  public:
    explicit OriginFinder(std::string_view text) : text_(text) {}

    /// Returns the fields of the outermost mail around `offset`: of the last message that begins before it in an mbox
    /// file (RFC 4155), else of the header at the beginning of the text. Of a repeated field the first counts.
    const Origin& at(std::uint64_t offset);

  private:
    std::string_view text_;
    std::uint64_t searched_ = 0;  ///< up to here
    std::uint64_t begin_ = 0;     ///< of the last message before `searched_`
    bool known_ = false;          ///< `origin_` is that of this message
    Origin origin_;
};

}  // namespace quill::codec
