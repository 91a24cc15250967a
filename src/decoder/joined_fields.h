#pragma once

#include "text/reader.h"

#include <cstddef>
#include <optional>
#include <string_view>

namespace quill::decoder {

/// The next field, without two blanks at its end; nullopt when all is read.
inline std::optional<std::string_view> next_trimmed_field(text::Reader& reader) {
    std::optional<std::string_view> field = reader.field();
    if (field && field->ends_with("  ")) field->remove_suffix(2);
    return field;
}

/// The fields of a text, each without two blanks at its end, as one endless line. Holds none of it in memory, however
/// long a field is.
class JoinedFields {
  public:
    /// Begins where `reader` stands.
    explicit JoinedFields(const text::Reader& reader) : reader_(reader) {}

    /// Gives the next `n` characters piece by piece to `out`, and a line end, until `out` returns false. Returns what
    /// `out` returned last. REQUIRES: there are so many.
    template <class Out>
    bool line(std::size_t n, const Out& out) {
        while (n > 0) {
            if (rest_.empty()) rest_ = next_trimmed_field(reader_).value();
            const std::string_view piece = rest_.substr(0, n);
            if (!out(piece)) return false;
            rest_.remove_prefix(piece.size());
            n -= piece.size();
        }
        return out(std::string_view("\r\n"));
    }

  private:
    text::Reader reader_;
    std::string_view rest_;
};

}  // namespace quill::decoder
