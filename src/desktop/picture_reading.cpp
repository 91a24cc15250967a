#include "desktop/picture_reading.h"

#include "files/directory.h"
#include "picture/decoder.h"

namespace quill::desktop {

QImage read_picture(const std::string& path, QSize bounds) {
    constexpr std::uint64_t most_bytes = 32U << 20U;
    const auto size = files::file_size(path);
    if (!size || *size > most_bytes) return {};
    const auto bytes = files::read_file(path);
    return bytes ? picture::Decoder().decode(*bytes, {bounds, 0, 0}).image : QImage();
}

}  // namespace quill::desktop
