#pragma once

#include "text/result.h"

#include <string>
#include <vector>

namespace quill::cli {

/// A file that may hold mail.
struct MailFile {
    std::string path;
    std::string beside;  ///< the directory that its results go to
};

/// What a directory holds.
struct MailTree {
    std::vector<MailFile> files;
    struct Failure {
        std::string path;
        Error error;
    };
    std::vector<Failure> failures;  ///< directories that could not be read
};

/// Returns the regular files in `directory` and in the directories below it, sorted by bytes. Leaves out links, hidden
/// entries, and this program's unfinished files. Of a Maildir it takes `cur` and `new`, not `tmp`, where unfinished
/// mail lies, and the folders in it though they are hidden; its results go beside the Maildir, so that no mail program
/// takes them for messages. Other results go beside their files.
MailTree mail_tree(const std::string& directory);

}  // namespace quill::cli
