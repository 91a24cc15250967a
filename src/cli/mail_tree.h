#pragma once

#include "text/result.h"

#include <string>
#include <vector>

namespace quill::cli {

/// A file that may hold mail.
struct MailFile {
    std::string path;
    std::string beside;  ///< the directory for its results
};

/// The files of a directory tree.
struct MailTree {
    std::vector<MailFile> files;
    struct Failure {
        std::string path;
        Error error;
    };
    std::vector<Failure> failures;  ///< directories that could not be read
};

/// Returns the regular files in `directory` and below it, sorted by bytes. Leaves out links, hidden entries, and this
/// program's unfinished files. In a Maildir it reads `cur` and `new`, not `tmp`, which holds unfinished mail, and also
/// its hidden folders; results go beside the Maildir, so that no mail program mistakes them for messages. Other results
/// go beside their files.
MailTree mail_tree(const std::string& directory);

}  // namespace quill::cli
