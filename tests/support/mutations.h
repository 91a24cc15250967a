#pragma once

#include "support/posts.h"

#include <cstdint>
#include <span>
#include <string_view>

/// What happens to posts on their way, each as one change of a text's rows.
namespace quill::tests {

/// Whether all bytes of the attachment are still in the text.
enum class Loss : std::uint8_t {
    bytes,  ///< something of the data is lost, changed or in another place
    form,   ///< everything is there, in another form; in quoted-printable such a change is one of the data
    units   ///< the text as a whole is in another form, whatever it holds
};

struct Mutation {
    std::string_view name;
    Loss loss = Loss::bytes;
    void (*apply)(Rows& rows, Random& random) = nullptr;
};

/// In the order in which they happen to one text: losses of bytes first.
std::span<const Mutation> mutations();

}  // namespace quill::tests
