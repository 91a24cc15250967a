#pragma once

#include "cli/console.h"

#include <functional>
#include <span>
#include <string>

namespace CLI {
class App;
}

namespace quill::cli {

/// The work that a command line asks for. Commands store it after the parser has accepted their arguments.
using Work = std::function<ExitStatus(const Console&)>;

/// Each adds one subcommand to `app`; parsing a command line that names it puts its work into `work`, which must
/// outlive `app`.
void add_decode_command(CLI::App& app, Work& work);
void add_encode_command(CLI::App& app, Work& work);
void add_list_command(CLI::App& app, Work& work);
void add_merge_command(CLI::App& app, Work& work);

/// Runs `quill` on `arguments`, which do not include its own name. Help goes to `console.out`, errors about the
/// arguments to `console.err`.
ExitStatus run(std::span<const std::string> arguments, const Console& console);

}  // namespace quill::cli
