#include "worker/waiting_decoder.h"

#include <array>
#include <chrono>
#include <cstdio>
#include <fstream>
#include <string>

/// picture_pixels PROGRAM FOLDER FILE...: decodes pictures with the worker PROGRAM, as the desktop does, and prints a
/// line for each: state, size, milliseconds, peak memory of the worker so far in MiB, reason. The pixels go into
/// FOLDER, under the number of the file, as PAM files of premultiplied RGBA.

namespace quill::picture {
namespace {

/// Returns the most memory that a process has had, in MiB.
long peak_of(pid_t process) {
    std::ifstream status("/proc/" + std::to_string(process) + "/status");
    for (std::string line; std::getline(status, line);) {
        if (line.starts_with("VmHWM:")) return std::stol(line.substr(6)) / 1024;
    }
    return 0;
}

void write_pixels(const std::string& path, const platform::Pixels& pixels) {
    std::ofstream out(path, std::ios::binary);
    out << "P7\nWIDTH " << pixels.size.width << "\nHEIGHT " << pixels.size.height
        << "\nDEPTH 4\nMAXVAL 255\nTUPLTYPE RGB_ALPHA\nENDHDR\n";
    for (int y = 0; y < pixels.size.height; ++y) {
        const auto* row =
            reinterpret_cast<const std::uint32_t*>(pixels.bytes.get() + pixels.stride * static_cast<std::size_t>(y));
        for (int x = 0; x < pixels.size.width; ++x) {
            const std::uint32_t pixel = row[x];
            for (const unsigned shift : {16U, 8U, 0U, 24U}) out.put(static_cast<char>(pixel >> shift & 0xFFU));
        }
    }
}

void report(int number, const platform::Picture& picture, long milliseconds, long peak) {
    constexpr std::array<const char*, 3> states = {"whole", "partial", "failed"};
    std::printf("%d\t%s\t%dx%d\t%ld\t%ld\t%s\n", number, states[static_cast<std::size_t>(picture.state)],
                picture.original.width, picture.original.height, milliseconds, peak, picture.reason.c_str());
}

int run(int count, char** arguments) {
    worker::WaitingDecoder decoder(arguments[1]);
    const std::string folder = arguments[2];
    for (int i = 3; i < count; ++i) {
        const auto begin = std::chrono::steady_clock::now();
        const platform::Picture picture = decoder.decode({arguments[i]}, {}, true);
        const auto taken = std::chrono::steady_clock::now() - begin;
        const long peak = decoder.process() ? peak_of(decoder.process()->process()) : 0;
        if (picture.pixels.bytes) write_pixels(folder + "/" + std::to_string(i - 3) + ".pam", picture.pixels);
        report(i - 3, picture, static_cast<long>(std::chrono::duration_cast<std::chrono::milliseconds>(taken).count()),
               peak);
    }
    return 0;
}

}  // namespace
}  // namespace quill::picture

int main(int count, char** arguments) {
    if (count < 3) return 2;
    return quill::picture::run(count, arguments);
}
