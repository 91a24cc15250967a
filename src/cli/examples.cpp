#include "cli/examples.h"

#include <CLI/CLI.hpp>

#include <algorithm>
#include <iterator>
#include <string>
#include <string_view>

namespace quill::cli {
namespace {

struct Example {
    std::string_view command;
    std::string_view arguments;
};

constexpr Example examples[] = {
    {"quill decode", "--into attachments mail.eml posts/*.uue"},
    {"quill list", "--json-lines Maildir"},
    {"quill encode", "--format yenc --part-size 500000 film.avi"},
    {"quill merge", "--output film.ync film.part*.ync"},
    {"quill zip list", "letters.zip"},
    {"quill zip extract", "--into letters letters.zip 2024 cover.txt"},
    {"quill zip add", "--password-file secret letters.zip 2025 plan.txt"},
    {"quill zip remove", "letters.zip 2023"},
    {"quill zip test", "letters.zip"},
    {"quill book create", "--from index.html --output travels.htx"},
    {"quill book list", "travels.htx"},
    {"quill book extract", "--into travels travels.htx"},
    {"quill book check", "travels.htx"},
    {"quill album list", "summer.pics"},
    {"quill album extract", "--into summer summer.pics"},
    {"quill album create", "summer.pics *.jpg"},
};

}  // namespace

void add_examples(CLI::App& group) {
    const CLI::App* parent = group.get_parent();
    const std::string above = parent == nullptr ? "" : parent->get_name() + " ";
    for (CLI::App* command : group.get_subcommands({})) {
        const std::string path = above + group.get_name() + " " + command->get_name();
        const auto* const row = std::find_if(std::begin(examples), std::end(examples),
                                             [&](const Example& example) { return example.command == path; });
        if (row == std::end(examples)) continue;
        const std::string footer = command->get_footer();
        command->footer("Example: " + path + " " + std::string(row->arguments) + (footer.empty() ? "" : "\n\n") +
                        footer);
    }
}

}  // namespace quill::cli
