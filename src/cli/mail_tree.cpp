#include "cli/mail_tree.h"

#include "files/directory.h"
#include "files/path.h"

#include <algorithm>
#include <filesystem>
#include <system_error>

namespace quill::cli {
namespace {
namespace fs = std::filesystem;

bool is_maildir(const std::string& directory) {
    const auto has = [&](const char* name) { return files::is_directory(files::join(directory, name)); };
    return has("cur") && has("new");
}

/// Returns the directory for results from the Maildir `directory`: beside the outermost Maildir if it is a folder in
/// one.
std::string beside_maildir(const std::string& directory) {
    const std::string parent = files::dir_of(directory);
    return !parent.empty() && is_maildir(parent) ? beside_maildir(parent) : parent;
}

class Walk {
  public:
    /// Enters `directory`. `beside` is the directory for results; null: beside each file.
    void enter(const std::string& directory, const std::string* beside) {
        std::vector<fs::directory_entry> entries;
        std::error_code error;
        for (fs::directory_iterator entry(directory, error), end; !error && entry != end; entry.increment(error)) {
            entries.push_back(*entry);
        }
        if (error) tree.failures.push_back({directory, system_error(error.value())});
        std::sort(entries.begin(), entries.end());
        const bool maildir = is_maildir(directory);
        const std::string of_maildir = maildir ? beside_maildir(directory) : std::string();
        for (const fs::directory_entry& entry : entries) visit(entry, maildir, maildir ? &of_maildir : beside);
    }

    MailTree tree;

  private:
    void visit(const fs::directory_entry& entry, bool in_maildir, const std::string* beside) {
        const std::string path = entry.path();
        const std::string name = files::name_of(path);
        std::error_code ignored;
        const fs::file_type type = entry.symlink_status(ignored).type();
        const bool is_folder = in_maildir && type == fs::file_type::directory && is_maildir(path);
        if (name.starts_with('.') && !is_folder) return;
        if (type == fs::file_type::directory && !(in_maildir && name == "tmp")) enter(path, beside);
        if (type == fs::file_type::regular) tree.files.push_back({path, beside ? *beside : files::dir_of(path)});
    }
};

}  // namespace

MailTree mail_tree(const std::string& directory) {
    Walk walk;
    const std::string name = files::name_of(directory);
    const std::string parent = files::dir_of(directory);
    const bool in_maildir = (name == "cur" || name == "new") && is_maildir(parent);
    const std::string of_maildir = in_maildir ? beside_maildir(parent) : std::string();
    walk.enter(directory, in_maildir ? &of_maildir : nullptr);
    return std::move(walk.tree);
}

}  // namespace quill::cli
