#pragma once

#include "support/posts.h"

#include <span>
#include <string>
#include <string_view>
#include <vector>

/// Ways to spread files over posts.
namespace quill::tests {

/// The contents of a post besides its sender and subject.
struct PostBody {
    std::string fields;  ///< more header fields, each with its line end
    std::string text;
};

struct PartFormat {
    std::string_view name;
    bool numbers_itself = false;  ///< the posts state their numbers regardless of their subjects
    bool ends = true;             ///< the last part is marked as the last
    std::vector<PostBody> (*split)(std::string_view bytes, std::string_view name, std::size_t parts) = nullptr;
};

std::span<const PartFormat> part_formats();

/// How a subject, or the name of the saved file, identifies the part in a post.
struct Habit {
    std::string_view name;
    bool has_total = false;
    std::string_view subject;    ///< N, T, TITLE are replaced; 0N by two digits
    std::string_view file = "";  ///< in the same way; empty if the file's name does not tell
};

std::span<const Habit> habits();

std::string filled(std::string_view pattern, std::string_view title, std::size_t number, std::size_t total);

}  // namespace quill::tests
