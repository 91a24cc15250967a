#pragma once

#include "text/reader.h"

#include <cstddef>
#include <optional>
#include <string_view>

namespace quill::decoder {

/// Returns the next field, without two blanks at its end; nullopt at the end of the text.
inline std::optional<std::string_view> next_trimmed_field(text::Reader& reader) {
    std::optional<std::string_view> field = reader.field();
    if (field && field->ends_with("  ")) field->remove_suffix(2);
    return field;
}

/// The fields of a text, each without two blanks at its end, as one endless line. Keeps none of it in memory, however
/// long a field is.
class JoinedFields {
  public:
    /// Begins at the position of `reader`.
    explicit JoinedFields(const text::Reader& reader) : reader_(reader) {}

    /// Passes the next `n` characters piece by piece to `out`, then a line end, until `out` returns false. Returns the
    /// last result of `out`. REQUIRES: at least `n` characters are left.
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
