#pragma once

#include "codec/recovery/recover.h"
#include "shell/main_window.h"

#include <span>
#include <string>
#include <vector>

/// The files that a decoding run made, found by comparing two listings of the input's directory: `File2` before the
/// run, `File3` after it.
namespace quill::decoder {

/// Refreshes `File3` and returns its names that are not in `File2` or that were `written`, in list order.
std::vector<std::string> find_new_files(shell::swit& w, std::span<const codec::Recovered> written);

/// Adds the files `names` of the input's directory to the results in `List3`, each with its outcome in `written`, and
/// opens the results panel. Renames a misnamed snapshot first. Does nothing if `names` is empty.
void show_results(shell::swit& w, const std::vector<std::string>& names, std::span<const codec::Recovered> written,
                  const std::string& source = {});

}  // namespace quill::decoder
