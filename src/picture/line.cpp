#include "picture/line.h"

#include "files/descriptor.h"

#include <algorithm>
#include <cstring>
#include <fcntl.h>
#include <sys/mman.h>
#include <unistd.h>

namespace quill::picture {
namespace {

using worker::Answer;
using worker::Fault;
using worker::Request;

/// Bytes of a file in memory.
class Mapped {
  public:
    Mapped(int file, std::uint64_t offset, std::uint64_t length) {
        const auto page = static_cast<std::uint64_t>(sysconf(_SC_PAGESIZE));
        const std::uint64_t before = offset % page;
        if (length == 0 || length > UINT64_MAX / 2) return;
        void* mapped =
            mmap(nullptr, length + before, PROT_READ, MAP_PRIVATE, file, static_cast<off_t>(offset - before));
        if (mapped == MAP_FAILED) return;
        begin_ = static_cast<char*>(mapped);
        size_ = length + before;
        bytes_ = std::string_view(begin_, size_).substr(before);
    }
    ~Mapped() {
        if (begin_ != nullptr) munmap(begin_, size_);
    }
    Mapped(const Mapped&) = delete;
    Mapped& operator=(const Mapped&) = delete;

    std::string_view bytes() const { return bytes_; }

  private:
    char* begin_ = nullptr;
    std::size_t size_ = 0;
    std::string_view bytes_;
};

/// Returns sealed memory with the pixels of an image; closed if there is not enough memory.
files::Descriptor shared_pixels(const QImage& image) {
    files::Descriptor memory(memfd_create("pixels", MFD_CLOEXEC | MFD_ALLOW_SEALING));
    const auto size = static_cast<std::size_t>(image.sizeInBytes());
    if (!memory.is_open() || ftruncate(memory.get(), static_cast<off_t>(size)) != 0) return {};
    void* bytes = mmap(nullptr, size, PROT_READ | PROT_WRITE, MAP_SHARED, memory.get(), 0);
    if (bytes == MAP_FAILED) return {};
    std::memcpy(bytes, image.constBits(), size);
    munmap(bytes, size);
    if (fcntl(memory.get(), F_ADD_SEALS, F_SEAL_SHRINK | F_SEAL_GROW | F_SEAL_WRITE | F_SEAL_SEAL) != 0) return {};
    return memory;
}

Answer answer_of(const Request& request, const Decoded& decoded) {
    Answer answer;
    answer.id = request.id;
    answer.stride = static_cast<std::uint64_t>(decoded.image.bytesPerLine());
    answer.width = decoded.image.width();
    answer.height = decoded.image.height();
    answer.original_width = decoded.original.width();
    answer.original_height = decoded.original.height();
    answer.count = decoded.count;
    answer.animated = decoded.animated ? 1 : 0;
    answer.delay = decoded.delay;
    answer.repeats = decoded.repeats;
    answer.percent = static_cast<std::uint8_t>(std::clamp(decoded.percent, 0, 100));
    answer.fault = decoded.fault;
    const auto size = std::min<std::size_t>(static_cast<std::size_t>(decoded.format.size()), answer.format.size());
    std::copy_n(decoded.format.constData(), size, answer.format.begin());
    return answer;
}

bool answer(int line, Decoder& decoder, const Request& request, const files::Descriptor& file) {
    const Mapped mapped(file.get(), request.offset, request.length);
    const Decoded decoded = decoder.decode(
        mapped.bytes(), {{request.width, request.height}, request.index, request.source, request.keeps_colors != 0});
    const files::Descriptor memory = decoded.image.isNull() ? files::Descriptor() : shared_pixels(decoded.image);
    Answer out = answer_of(request, decoded);
    if (!memory.is_open() && out.fault == Fault::none) out.fault = Fault::too_large;
    return worker::send_message(line, &out, sizeof out, memory.get());
}

}  // namespace

void serve(int line) {
    Decoder decoder;
    for (;;) {
        Request request;
        const worker::Received received = worker::receive_message(line, &request, sizeof request);
        const files::Descriptor file(received.file);
        if (received.size != sizeof request || !answer(line, decoder, request, file)) return;
    }
}

}  // namespace quill::picture
