#include "support/recovered_files.h"

#include "files/directory.h"
#include "support/temporary_directory.h"

namespace quill::tests {

std::vector<RecoveredFile> recovered_files(std::span<const Inputs::value_type> inputs) {
    const TemporaryDirectory dir;
    std::vector<std::string> paths;
    for (const auto& [name, bytes] : inputs) paths.push_back(dir.write(name, bytes));
    std::vector<RecoveredFile> out;
    const Result<codec::Recovery> recovery = codec::Recovery::open(paths);
    if (!recovery) return out;
    for (const codec::Attachment& found : recovery->attachments()) {
        if (found.message_text || found.resource_fork || found.format == codec::Format::identity) continue;
        const std::string path = dir.path("result " + std::to_string(out.size()));
        const auto written = recovery->write(found, path, files::OnCollision::fail);
        RecoveredFile file{found.name, "", {}, {}};
        if (written) {
            file = {found.name, files::read_file(path).value(), written->outcome, written->sources};
        } else {
            file.outcome.verdict = codec::Verdict::damaged;
        }
        out.push_back(std::move(file));
    }
    return out;
}

}  // namespace quill::tests
