#include "codec/binhex/binhex_runs.h"

#include <algorithm>

namespace quill::codec::binhex {
namespace {

/// The output position and the room left there.
struct Room {
    char* out;
    std::size_t left;

    std::size_t copy(std::string_view bytes) {
        const std::size_t n = std::min(bytes.size(), left);
        out = std::copy_n(bytes.data(), n, out);
        left -= n;
        return n;
    }

    void repeat(RunState& state) {
        const std::size_t n = std::min<std::size_t>(state.copies_left, left);
        out = std::fill_n(out, n, static_cast<char>(state.last));
        left -= n;
        state.copies_left = static_cast<std::uint8_t>(state.copies_left - n);
    }
};

/// Reads the count after a marker.
void begin_run(char count, Room& room, RunState& state) {
    state.behind_marker = false;
    if (count == 0) {
        room.copy({&run_marker, 1});
        state.last = static_cast<std::uint8_t>(run_marker);
    } else {
        state.copies_left = static_cast<std::uint8_t>(static_cast<std::uint8_t>(count) - 1);
        room.repeat(state);
    }
}

}  // namespace

Progress decode_runs(std::string_view in, char* out, std::size_t capacity, RunState& state) {
    Room room{out, capacity};
    room.repeat(state);
    std::size_t at = 0;
    while (at < in.size() && room.left > 0) {
        if (state.behind_marker) {
            begin_run(in[at++], room, state);
            continue;
        }
        const std::string_view ahead = in.substr(at, room.left);
        const std::string_view literals = ahead.substr(0, ahead.find(run_marker));
        if (!literals.empty()) state.last = static_cast<std::uint8_t>(literals.back());
        at += room.copy(literals);
        if (literals.size() < ahead.size()) {
            state.behind_marker = true;
            ++at;
        }
    }
    return {at, capacity - room.left};
}

std::size_t find_run_or_marker_reference(std::string_view in, std::size_t from) {
    for (std::size_t at = from; at < in.size(); ++at) {
        const std::string_view run = in.substr(at, shortest_run);
        const bool same = run.size() == shortest_run && run.find_first_not_of(run.front()) == std::string_view::npos;
        if (same || run.front() == run_marker) return at;
    }
    return in.size();
}

}  // namespace quill::codec::binhex
