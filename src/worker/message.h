#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string_view>
#include <type_traits>

/// What goes over the line between the program and a picture worker: one message in each direction for a picture, each
/// one packet of a Unix socket. Both ends are of one build, so plain structs do; the program still believes no answer.
namespace quill::worker {

/// Says that the worker is ready, and how it has shut itself in. The first message from it.
struct Hello {
    static constexpr std::uint32_t right_magic = 0x514C5732;

    std::uint32_t magic = 0;
    std::uint8_t has_seccomp = 0;   ///< system calls that decoding does not need fail
    std::uint8_t has_landlock = 0;  ///< it can't name files
};

/// Asks for a picture. The open file goes with it.
struct Request {
    std::uint64_t id = 0;
    std::uint64_t source = 0;  ///< the same number means the same bytes, so that an animation can go on
    std::uint64_t offset = 0;  ///< of the picture in the file
    std::uint64_t length = 0;
    std::int32_t width = 0;  ///< bounds; 0: none
    std::int32_t height = 0;
    std::uint32_t index = 0;         ///< of the frame, page or image
    std::uint32_t keeps_colors = 0;  ///< 1: as the file has them, whatever its color profile
};

/// Why there is no picture, or not all of it.
enum class Fault : std::uint8_t {
    none,
    not_a_picture,  ///< no format is recognised
    too_large,      ///< more pixels or memory than are granted
    no_such_image,  ///< fewer frames or pages than the index
    damaged,        ///< the decoder found errors
    cut             ///< the file ends too early
};

/// Answers a request; the memory with the pixels goes with it, where there are any.
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

/// Sends one message with an open file (-1: none). False, with errno set, where it can't be sent.
bool send_message(int socket, const void* bytes, std::size_t size, int file);

/// What was received: bytes, and the file that came along (-1: none), which the caller closes.
struct Received {
    std::ptrdiff_t size = -1;  ///< 0: the other end is closed; -1: failed, see errno
    int file = -1;
};

/// Receives one message of at most `size` bytes.
Received receive_message(int socket, void* bytes, std::size_t size);

}  // namespace quill::worker
