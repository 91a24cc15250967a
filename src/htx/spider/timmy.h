#pragma once

#include "encoder/file_chooser.h"
#include "shell/session.h"

#include <string>

/// The chooser's link spider: what the pages that are picked for a book lead to.
namespace quill::htx {

/// Reads the page at `path`, whose name must end in htm or tml, and adds what it leads to to the lists of valid images
/// and of valid pages: first the links that are found line by line as files of the chooser's directory, as they are
/// written; then those that only a reading of the tags finds, as paths from that directory. What is not a file is left
/// out, and so is what the lists have already.
void timmy(encoder::cmdg& chooser, const std::string& path);

/// Connects the spider to the buttons of the chooser. `context` and the window must outlive their last use.
void connect_spider(shell::Context& context, encoder::cmdg& chooser);

}  // namespace quill::htx
