#include "worker/worker_process.h"

#include <array>
#include <chrono>
#include <cstdio>
#include <fstream>
#include <optional>
#include <poll.h>
#include <sstream>
#include <string>
#include <variant>

/// picture_pixels PROGRAM FOLDER FILE...: decodes pictures with the worker PROGRAM, as the desktop does, and prints a
/// line for each: state, size, milliseconds, most memory of the worker so far in MiB, reason. The pixels go into
/// FOLDER, under the number of the file, as PAM files of premultiplied RGBA.

namespace quill::picture {
namespace {

using worker::WorkerProcess;

constexpr int patience = 30'000;  // milliseconds for a picture

platform::Picture decode(std::optional<WorkerProcess>& process, const std::string& program, const std::string& path) {
    if (!process) {
        auto started = WorkerProcess::start(program);
        if (!started) return worker::failed_picture("the decoder can't be started");
        process.emplace(*std::move(started));
    }
    const auto open = worker::open_source({path});
    if (!open) return worker::failed_picture(open.error().text);
    worker::Request request;
    request.length = open->length;
    request.keeps_colors = 1;
    if (!process->send(request, open->file.get())) return worker::failed_picture("crash");
    for (;;) {
        pollfd line{process->line(), POLLIN, 0};
        if (poll(&line, 1, patience) == 0) return worker::failed_picture("hang");
        const auto message = process->receive();
        if (const auto* reply = std::get_if<WorkerProcess::Reply>(&message)) return reply->picture;
        const auto* nothing = std::get_if<WorkerProcess::Nothing>(&message);
        if (nothing != nullptr && *nothing == WorkerProcess::Nothing::any_more) return worker::failed_picture("crash");
    }
}

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
    const std::string program = arguments[1], folder = arguments[2];
    std::optional<WorkerProcess> process;
    for (int i = 3; i < count; ++i) {
        const auto begin = std::chrono::steady_clock::now();
        const platform::Picture picture = decode(process, program, arguments[i]);
        const auto taken = std::chrono::steady_clock::now() - begin;
        const long peak = process ? peak_of(process->process()) : 0;
        if (picture.pixels.bytes) write_pixels(folder + "/" + std::to_string(i - 3) + ".pam", picture.pixels);
        report(i - 3, picture, static_cast<long>(std::chrono::duration_cast<std::chrono::milliseconds>(taken).count()),
               peak);
        if (picture.reason == "crash" || picture.reason == "hang") process.reset();
    }
    return 0;
}

}  // namespace
}  // namespace quill::picture

int main(int count, char** arguments) {
    if (count < 3) return 2;
    return quill::picture::run(count, arguments);
}
