#include "codec/wrappings/sample.h"

namespace quill::codec {

Sample::Sample(std::string_view text) {
    if (text.size() <= short_text) {
        windows_[0] = text;
        return;
    }
    windows_[0] = text.substr(0, beginning);
    const std::size_t stride = (text.size() - beginning - window) / (most_windows - 1);
    for (std::size_t i = 0; i < most_windows; ++i) {
        std::string_view seen = text.substr(beginning + i * stride, window);
        const std::size_t line_end = seen.find_first_of("\r\n");
        if (line_end != std::string_view::npos) seen.remove_prefix(line_end + 1);
        windows_[count_++] = seen;
    }
}

}  // namespace quill::codec
