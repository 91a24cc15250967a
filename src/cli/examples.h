#pragma once

namespace CLI {
class App;
}  // namespace CLI

namespace quill::cli {

/// Puts an example before what the help of each command of `group` ends with. Commands that only hold others have none.
void add_examples(CLI::App& group);

}  // namespace quill::cli
