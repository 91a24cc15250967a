#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>

/// The run-length step of BinHex 4.0, between its 6-bit step and the file: the marker 0x90 and a count.
namespace quill::codec::binhex {

/// The state that a call leaves for the next one.
struct RunState {
    std::uint8_t last = 0;         ///< the byte that a run repeats
    bool behind_marker = false;    ///< the marker was read, its count was not
    std::uint8_t copies_left = 0;  ///< copies of `last` that did not fit

    bool operator==(const RunState&) const = default;
};

/// The progress of a call.
struct Progress {
    std::size_t read = 0;     ///< bytes of input consumed
    std::size_t written = 0;  ///< bytes of output

    bool operator==(const Progress&) const = default;
};

/// Returns the most bytes that `decode_runs` can write for `n` bytes of input with enough room. A marker and its count
/// yield up to 254 bytes, so this is too much to allocate for untrusted input: provide a fixed room and call again.
constexpr std::size_t decoded_runs_bound(std::size_t n) {
    return n / 2 * 254 + 510;
}

/// Expands `in` until it is consumed or `capacity` bytes are written to `out`. 0x90 0x00 is the byte 0x90; 0x90 n, n
/// from 1, is n - 1 further copies of the byte before it (of 0 if there is none). Input and output may be cut anywhere:
/// continue with the rest and the same `state` while `read` is less than the input or `state.copies_left` is not 0.
Progress decode_runs(std::string_view in, char* out, std::size_t capacity, RunState& state);

constexpr char run_marker = '\x90';
constexpr std::size_t shortest_run = 4;  ///< below it a run is not shorter with a marker

/// Returns the first position at or after `from` that holds a marker or begins `shortest_run` equal bytes; in.size() if
/// there is none. The bytes before it are written unchanged.
std::size_t find_run_or_marker(std::string_view in, std::size_t from);
std::size_t find_run_or_marker_reference(std::string_view in, std::size_t from);

}  // namespace quill::codec::binhex
