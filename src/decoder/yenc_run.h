#pragma once

#include "shell/session.h"

#include <string>

/// Decoding of a yEnc text by the program's own rules, without the decoding library.
///
/// None of these says a failure: what could not be written does not show among the results. What a post states of its
/// size and checksum changes nothing of what is decoded; it is held against the result for its row in the list.
namespace quill::decoder {

/// Finds the header of the yEnc text in `path`, sets `YencName` and `DataStart`, and decodes: by `getbytestoo` where
/// the command line begins with '&' or the lines ahead of the header show a newsreader that doubles dots, else by
/// `getbytes`. A text without a header line is left alone.
void findfirst(shell::Context& context, std::string& path);

/// Decodes the data of `path` from `DataStart` on as `YencName`, in the current directory. What stands there is
/// replaced once the output is whole; the input itself never is, the output then gets another name. Takes its own
/// snapshot of `SelectedDir`. Reports the new files.
void getbytes(shell::Context& context, std::string& path);

/// The same with doubled dots at line starts undone. What has content is never replaced: the output gets a name with
/// "-a" before the last four characters instead, or the next such. The snapshot is the one taken before.
void getbytestoo(shell::Context& context, std::string& path);

}  // namespace quill::decoder
