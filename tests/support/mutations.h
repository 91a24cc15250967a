#pragma once

#include "support/posts.h"

#include <cstdint>
#include <span>
#include <string_view>

/// Changes of posts in transit, each as one change of a text's rows.
namespace quill::tests {

/// Whether all bytes of the attachment are still in the text.
enum class Loss : std::uint8_t {
    bytes,  ///< some data is lost, changed or in another place
    form,   ///< all data is there, in another form; in quoted-printable such a change affects the data
    units   ///< the text as a whole is in another form, whatever it contains
};

struct Mutation {
    std::string_view name;
    Loss loss = Loss::bytes;
    void (*apply)(Rows& rows, Random& random) = nullptr;
};

/// Returns all mutations in the order in which they happen to a text: losses of bytes first.
std::span<const Mutation> mutations();

}  // namespace quill::tests
