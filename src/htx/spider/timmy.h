#pragma once

#include "encoder/file_chooser.h"
#include "shell/session.h"

#include <string>

/// The chooser's link spider: finds the files that the pages chosen for a book lead to.
namespace quill::htx {

/// Reads the page at `path`, whose name must end in htm or tml, and adds the files that it leads to to the lists of
/// valid images and of valid pages: first the links found line by line as files of the chooser's directory, as written;
/// then those that only parsing the tags finds, as paths from that directory. Leaves out links that are not files and
/// those already listed.
void timmy(encoder::cmdg& chooser, const std::string& path);

/// Connects the spider to the buttons of the chooser. `context` and the window must outlive their last use.
void connect_spider(shell::Context& context, encoder::cmdg& chooser);

}  // namespace quill::htx
