#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string_view>
#include <type_traits>

/// The messages between the program and a picture worker: one in each direction for a picture, each one packet of a
/// Unix socket. Both ends are from one build, so plain structs are enough; the program still trusts no answer.
namespace quill::worker {

/// Reports that the worker is ready, and how it is confined. Its first message.
struct Hello {
    static constexpr std::uint32_t right_magic = 0x514C5732;

    std::uint32_t magic = 0;
    std::uint8_t has_seccomp = 0;   ///< system calls that decoding does not need fail
    std::uint8_t has_landlock = 0;  ///< it can't name files
};

/// Requests a picture. The open file is sent along.
struct Request {
    std::uint64_t id = 0;
    std::uint64_t source = 0;  ///< the same number means the same bytes, so that an animation can continue
    std::uint64_t offset = 0;  ///< of the picture in the file
    std::uint64_t length = 0;
    std::int32_t width = 0;  ///< bounds; 0: none
    std::int32_t height = 0;
    std::uint32_t index = 0;         ///< of the frame, page or image
    std::uint32_t keeps_colors = 0;  ///< 1: as in the file, whatever its color profile
};

/// Why a picture is missing or incomplete.
enum class Fault : std::uint8_t {
    none,
    not_a_picture,  ///< no format is recognised
    too_large,      ///< exceeds the limits on pixels or memory
    no_such_image,  ///< fewer frames or pages than the index
    damaged,        ///< the decoder found errors
    cut             ///< the file ends too early
};

/// Answers a request; the memory with the pixels, if any, is sent along.
struct Answer {
    std::uint64_t id = 0;
    std::uint64_t stride = 0;  ///< bytes of a row
    std::int32_t width = 0;    ///< of the pixels; 0: none
    std::int32_t height = 0;
    std::int32_t original_width = 0;
    std::int32_t original_height = 0;
    std::uint32_t count = 0;
    std::int32_t delay = 0;
    std::int32_t repeats = 0;
    std::uint8_t animated = 0;
    std::uint8_t percent = 0;
    Fault fault = Fault::none;
    std::array<char, 16> format = {};  ///< letters and digits, then zeros
};

static_assert(std::is_trivially_copyable_v<Request> && std::is_trivially_copyable_v<Answer>);

/// The descriptor of the worker's end of the line.
constexpr int line_descriptor = 3;

/// Sends one message with an open file (-1: none). Returns false, with errno set, if it can't be sent.
bool send_message(int socket, const void* bytes, std::size_t size, int file);

/// A received message: its size, and the file that came with it (-1: none), which the caller closes.
struct Received {
    std::ptrdiff_t size = -1;  ///< 0: the other end is closed; -1: failed, see errno
    int file = -1;
};

/// Receives one message of at most `size` bytes.
Received receive_message(int socket, void* bytes, std::size_t size);

}  // namespace quill::worker
