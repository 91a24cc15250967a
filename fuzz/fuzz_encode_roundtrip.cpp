// Anything encoded comes back from our own decoder, byte for byte and without a problem.
#include "codec/recovery/recover.h"
#include "codec/writing/encode.h"
#include "files/atomic_file.h"
#include "files/directory.h"

#include <cstdint>
#include <cstdlib>
#include <string>
#include <unistd.h>

namespace {

using namespace quill;

/// Returns a directory of this process, in memory if the machine supports that.
const std::string& directory() {
    static const std::string path = [] {
        std::string name = (files::is_directory("/dev/shm") ? "/dev/shm" : "/var/tmp") + std::string("/fuzz-XXXXXX");
        if (mkdtemp(name.data()) == nullptr) std::abort();
        return name;
    }();
    return path;
}

void expect_back(const std::string& input, const std::string& bytes, const codec::OutputFormat& format,
                 const codec::EncodeOptions& options) {
    const auto encoded = codec::encode_file(input, directory() + "/out", format, options);
    if (!encoded) std::abort();
    const auto recovery = codec::Recovery::open(*encoded);
    if (!recovery || recovery->attachments().size() != 1) std::abort();
    const auto written =
        recovery->write(recovery->attachments()[0], directory() + "/back", files::OnCollision::replace);
    if (!written || !written->outcome.problems.empty()) std::abort();
    if (files::read_file(written->path).value() != bytes) std::abort();
    for (const std::string& path : *encoded) files::remove_file(path);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (size < 3 || size > 4096) return 0;
    const std::size_t a = data[0];
    const std::size_t b = data[1];
    const codec::OutputFormat& format = codec::output_formats()[data[2] % codec::output_formats().size()];
    const std::string bytes(reinterpret_cast<const char*>(data + 3), size - 3);
    codec::EncodeOptions options;
    if (format.line_limit != 0) options.line_length = a % (format.line_limit / format.line_unit + 1) * format.line_unit;
    if (format.part_unit != 0 && b != 0) options.part_size = format.part_unit * (b + bytes.size() / 64);
    options.crc = format.takes_crc && a % 2 == 1;

    const std::string input = directory() + "/in.bin";
    {
        auto file = files::AtomicFile::create(input);
        if (!file || !file->write(bytes) || !file->publish(files::OnCollision::replace)) std::abort();
    }
    expect_back(input, bytes, format, options);
    return 0;
}
