#pragma once

#include "shell/session.h"

#include <cstdint>
#include <string>

/// Decoding by the library, and the second tries for a text in which it finds nothing. All work files are nameless
/// temporary ones: the input is never written, and only decoded files appear beside it.
namespace quill::decoder {

/// The facts about a text that are known before the library reads it.
struct Reading {
    bool dots_doubled = false;  ///< its newsreader doubles dots at line starts
    bool tags_removed = false;  ///< it is a copy without the `<BR>` at its line ends
};

/// Decodes `path` with the library into the current directory and shows the new files in the results list. If it finds
/// nothing, `undectwo` tries again; if nothing that it found could be written, reports that and tries nothing else. A
/// Stop keeps the files that are complete by then.
void decode_with_library(shell::Context& context, const std::string& path, Reading reading = {});

/// Makes a copy of the text `path` with even lines and decodes it with the library. Names each new file in a message;
/// if there is none, or in the third pass of a run, which tries nothing, opens the repair guide.
void undectwo(shell::Context& context, const std::string& path);

/// Skips the head of the text `path`, up to byte number `offset`, and passes the rest to `undectwo`. Raises `offset` by
/// 2 first.
void skiptotail(shell::Context& context, const std::string& path, std::uint64_t& offset);

}  // namespace quill::decoder
