#pragma once

#include "shell/session.h"

#include <cstdint>
#include <string>

/// Decoding by the library, and the second tries where it makes nothing of a text. All work files are nameless
/// temporary ones: the input is never written, and nothing but decoded files appears beside it.
namespace quill::decoder {

/// What was found out about a text before the library reads it.
struct Reading {
    bool dots_doubled = false;  ///< its newsreader doubles dots at the beginnings of lines
    bool tags_removed = false;  ///< it is a copy whose lines have lost their `<BR>`
};

/// Has the library decode `path` into the current directory and shows the new files in the results list. Where it finds
/// nothing, `undectwo` tries again; where all that it found could not be written, that is said and nothing is tried. A
/// Stop keeps the files that are whole by then.
void decode_with_library(shell::Context& context, const std::string& path, Reading reading = {});

/// Makes an even copy of the text `path` and has the library decode that. Each new file is named in a message; where
/// there is none the repair guide opens, and likewise in the third pass of a run, which tries nothing.
void undectwo(shell::Context& context, const std::string& path);

/// Drops the head of the text `path`, up to byte number `offset`, and has `undectwo` try what follows. Raises `offset`
/// by 2 first.
void skiptotail(shell::Context& context, const std::string& path, std::uint64_t& offset);

}  // namespace quill::decoder
