#pragma once

#include "codec/recovery/recover.h"
#include "shell/session.h"

#include <span>
#include <string>

namespace quill::decoder {

/// Returns how a run went, in a few words: "3 saved, 1 damaged, 1 not saved".
std::string outcome_words(std::span<const codec::Recovered> files);

/// Heads the results panel with the current message, the directory of its files, and how its run went.
void head_results(shell::Context& context, std::span<const codec::Recovered> files);

/// Shows the directory of the latest results in the desktop's own file manager.
void open_results_folder(shell::Context& context);

}  // namespace quill::decoder
