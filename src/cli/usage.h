#pragma once

#include <functional>
#include <string>
#include <vector>

namespace CLI {
class App;
class ParseError;
class Validator;
}  // namespace CLI

namespace quill::cli {

/// Returns the sentence for `error`, which parsing a command line gave: the command that it is about, what to do, and
/// where the usage is.
std::string complaint(const CLI::App& app, const CLI::ParseError& error);

/// Accepts one of `names` alone, whatever the case of its letters, and turns it into that name.
CLI::Validator one_of(const std::vector<std::string>& names);

/// Gives `group` its commands by `fill` once its name was read from the command line: a start pays for no others.
void fill_when_used(CLI::App& group, const std::function<void(CLI::App& group)>& fill);

/// Accepts whole numbers above 0 alone.
CLI::Validator above_zero();

}  // namespace quill::cli
