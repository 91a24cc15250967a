#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>

/// The run-length step of BinHex 4.0, which stands between its 6-bit step and the file: the marker 0x90 and a count.
namespace quill::codec::binhex {

/// What a call leaves for the next one.
struct RunState {
    std::uint8_t last = 0;         ///< the byte that a run repeats
    bool behind_marker = false;    ///< the marker was read, its count wasn't
    std::uint8_t copies_left = 0;  ///< copies of `last` that had no room

    bool operator==(const RunState&) const = default;
};

/// How far a call came.
struct Progress {
    std::size_t read = 0;     ///< bytes of input used up
    std::size_t written = 0;  ///< bytes of output

    bool operator==(const Progress&) const = default;
};

/// The most bytes that `decode_runs` can write for `n` bytes of input with enough room. A marker and its count give up
/// to 254 bytes, so this is too much to be allocated for input from outside: give it a fixed room and call again.
constexpr std::size_t decoded_runs_bound(std::size_t n) {
    return n / 2 * 254 + 510;
}

/// Expands `in` until it is used up or `capacity` bytes are written to `out`. 0x90 0x00 is the byte 0x90; 0x90 n, n
/// from 1, is n - 1 further copies of the byte before it (of 0 where there is none). Input and output may be cut
/// anywhere: go on with the rest and the same `state` while `read` is short of the input or `state.copies_left` is not
/// 0.
Progress decode_runs(std::string_view in, char* out, std::size_t capacity, RunState& state);

constexpr char run_marker = '\x90';
constexpr std::size_t shortest_run = 4;  ///< below it a run is not shorter with a marker

/// The first position from `from` on where a marker stands or `shortest_run` equal bytes begin; in.size() where there
/// is none: what is before it is written as it is.
std::size_t find_run_or_marker(std::string_view in, std::size_t from);
std::size_t find_run_or_marker_reference(std::string_view in, std::size_t from);

}  // namespace quill::codec::binhex
