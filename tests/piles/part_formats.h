#pragma once

#include "support/posts.h"

#include <span>
#include <string>
#include <string_view>
#include <vector>

/// How files are spread over posts.
namespace quill::tests {

/// What a post holds beside its sender and subject.
struct PostBody {
    std::string fields;  ///< more header fields, each with its line end
    std::string text;
};

struct PartFormat {
    std::string_view name;
    bool numbers_itself = false;  ///< the posts state their numbers whatever their subjects are
    bool ends = true;             ///< the last part is marked as that
    std::vector<PostBody> (*split)(std::string_view bytes, std::string_view name, std::size_t parts) = nullptr;
};

std::span<const PartFormat> part_formats();

/// How a subject, or the name of the saved file, says which part a post is.
struct Habit {
    std::string_view name;
    bool has_total = false;
    std::string_view subject;    ///< N, T, TITLE are replaced; 0N by two digits
    std::string_view file = "";  ///< likewise; empty where the file's name says nothing
};

std::span<const Habit> habits();

std::string filled(std::string_view pattern, std::string_view title, std::size_t number, std::size_t total);

}  // namespace quill::tests
