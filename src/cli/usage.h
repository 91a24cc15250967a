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

/// Returns the sentence for `error`, the result of parsing a command line: the command concerned, what to do, and where
/// the usage is.
std::string complaint(const CLI::App& app, const CLI::ParseError& error);

/// Accepts only one of `names`, ignoring case, and turns it into that name.
CLI::Validator one_of(const std::vector<std::string>& names);

/// Fills `group` with its commands only when its name was read from the command line, so that other starts cost less.
void fill_when_used(CLI::App& group, const std::function<void(CLI::App& group)>& fill);

/// Accepts only whole numbers above 0.
CLI::Validator above_zero();

}  // namespace quill::cli
