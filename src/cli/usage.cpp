#include "cli/usage.h"

#include "cli/examples.h"
#include "text/ascii.h"
#include "text/printable.h"

#include <CLI/CLI.hpp>

#include <algorithm>
#include <string_view>

namespace quill::cli {
namespace {

std::string join(const std::vector<std::string>& words, std::string_view separator) {
    std::string out;
    for (const std::string& word : words) out.append(out.empty() ? "" : separator).append(word);
    return out;
}

/// Returns the innermost command that the arguments name: "quill zip list".
const CLI::App& named_command(const CLI::App& app, std::string& name) {
    const CLI::App* command = &app;
    name = app.get_name();
    while (!command->get_subcommands().empty()) {
        command = command->get_subcommands().front();
        name += " " + command->get_name();
    }
    return *command;
}

/// Returns the message for the first unexpected argument; `wanted` is what the user may have meant.
std::string about_unexpected(const CLI::App& command, std::string_view wanted) {
    const std::vector<std::string> extra = command.remaining();
    const std::string first = extra.empty() ? std::string() : extra.front();
    return "there is no " + std::string(first.starts_with('-') ? "option" : wanted) + " " + first;
}

/// Required arguments, and the message for each that is missing.
constexpr struct {
    std::string_view argument;
    std::string_view what_to_do;
} required[] = {
    {"FILE", "name at least one file"},
    {"ARCHIVE", "name an archive"},
    {"NAME", "name what to add or remove"},
    {"--format", "choose a format with --format"},
};

std::string about_missing(const CLI::App& command, std::string_view what) {
    if (what.starts_with("A subcommand")) {
        if (!command.remaining().empty()) return about_unexpected(command, "command");
        std::vector<std::string> names;
        for (const CLI::App* each : command.get_subcommands({})) names.push_back(each->get_name());
        return "name a command: " + join(names, ", ");
    }
    const std::string_view argument = what.substr(0, what.find(' '));
    if (argument == "FILE" && command.get_name() == "merge") return "name at least two files";
    for (const auto& row : required) {
        if (row.argument == argument) return std::string(row.what_to_do);
    }
    return std::string(argument) + " is missing";
}

/// Explains errors such as "--into: 1 required DIR missing", "--into: At Most 1 required but received 2".
std::string about_count(const CLI::App& command, std::string_view what) {
    const std::string argument(what.substr(0, what.find(':')));
    if (argument == "FILE") return about_missing(command, "FILE");
    if (what.find("At Most") != std::string_view::npos) return "give " + argument + " only once";
    return argument + " needs a value";
}

/// Explains errors such as "--json excludes --json-lines".
std::string about_conflict(std::string_view what) {
    const std::string first(what.substr(0, what.find(' ')));
    return first + " and " + std::string(what.substr(what.rfind(' ') + 1)) + " can't be used together";
}

std::string what_to_do(const CLI::App& command, const CLI::ParseError& error) {
    const std::string_view what = error.what();
    if (dynamic_cast<const CLI::RequiredError*>(&error) != nullptr) return about_missing(command, what);
    if (dynamic_cast<const CLI::ExtrasError*>(&error) != nullptr) return about_unexpected(command, "argument");
    if (dynamic_cast<const CLI::ArgumentMismatch*>(&error) != nullptr) return about_count(command, what);
    if (dynamic_cast<const CLI::ExcludesError*>(&error) != nullptr) return about_conflict(what);
    return std::string(what);
}

}  // namespace

std::string complaint(const CLI::App& app, const CLI::ParseError& error) {
    std::string name;
    const CLI::App& command = named_command(app, name);
    return name + ": " + text::printable(what_to_do(command, error)) + "; see " + name + " --help\n";
}

CLI::Validator one_of(const std::vector<std::string>& names) {
    return {[names](std::string& value) -> std::string {
                const auto known = std::find_if(names.begin(), names.end(), [&](const std::string& name) {
                    return text::equal_ignoring_case(name, value);
                });
                if (known == names.end()) return value + " is not one of " + join(names, ", ");
                value = *known;
                return std::string();
            },
            "{" + join(names, ",") + "}"};
}

void fill_when_used(CLI::App& group, const std::function<void(CLI::App& group)>& fill) {
    group.preparse_callback([&group, fill](std::size_t) {
        fill(group);
        add_examples(group);
    });
}

CLI::Validator above_zero() {
    return {[](std::string& value) {
                const bool digits = value.find_first_not_of("0123456789") == std::string::npos;
                const bool zero = value.find_first_not_of('0') == std::string::npos;
                return digits && !zero ? std::string() : value + " is not a whole number above 0";
            },
            ""};
}

}  // namespace quill::cli
