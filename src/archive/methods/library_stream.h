#pragma once

#include "archive/methods/decompressor.h"

#include <algorithm>
#include <limits>

namespace quill::archive {

/// Makes one call of a library whose stream has the four members of zlib's: `next_in`, `avail_in`, `next_out`,
/// `avail_out`. Sets them, and counts afterwards how much the call used.
template <class Stream>
class LibraryStep {
  public:
    LibraryStep(Stream& stream, std::string_view in, std::span<char> out)
        : stream_(stream), in_(clamped(stream.avail_in, in.size())), out_(clamped(stream.avail_out, out.size())) {
        // The libraries do not write to their input, though some take a pointer to non-const.
        stream.next_in = reinterpret_cast<decltype(stream.next_in)>(const_cast<char*>(in.data()));
        stream.avail_in = static_cast<decltype(stream.avail_in)>(in_);
        stream.next_out = reinterpret_cast<decltype(stream.next_out)>(out.data());
        stream.avail_out = static_cast<decltype(stream.avail_out)>(out_);
    }

    Step result(StreamState state) const { return {state, in_ - stream_.avail_in, out_ - stream_.avail_out}; }

  private:
    /// Returns the part of `size` that the library's counter can hold.
    template <class Counter>
    static std::size_t clamped(Counter, std::size_t size) {
        return std::min<std::size_t>(size, std::numeric_limits<Counter>::max());
    }

    Stream& stream_;
    std::size_t in_;
    std::size_t out_;
};

}  // namespace quill::archive
