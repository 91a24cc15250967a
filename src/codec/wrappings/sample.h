#pragma once

#include <algorithm>
#include <array>
#include <cstddef>
#include <span>
#include <string_view>

namespace quill::codec {

/// The examined part of a text: all of a short one, else its beginning and a few windows spread over the rest.
class Sample {
  public:
    static constexpr std::size_t beginning = std::size_t{16} << 10;
    static constexpr std::size_t window = std::size_t{1} << 10;
    static constexpr std::size_t most_windows = 16;
    static constexpr std::size_t short_text = beginning + most_windows * window;

    explicit Sample(std::string_view text);

    /// Returns the windows in order. All but the first begin after a line end, if there is one.
    std::span<const std::string_view> windows() const { return std::span(windows_).first(count_); }

    /// Returns the beginning of the text.
    std::string_view first() const { return windows_[0]; }

    /// Returns true if `fits` holds for one of the windows.
    template <typename Fits>
    bool any(const Fits& fits) const {
        const auto all = windows();
        return std::any_of(all.begin(), all.end(), fits);
    }

  private:
    std::array<std::string_view, most_windows + 1> windows_;
    std::size_t count_ = 1;
};

}  // namespace quill::codec
