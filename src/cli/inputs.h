#pragma once

#include "cli/progress.h"
#include "cli/report.h"
#include "codec/recover.h"
#include "files/temporary_file.h"

#include <istream>
#include <optional>
#include <string>
#include <vector>

namespace CLI {
class App;
}

namespace quill::cli {

/// What the commands that read messages are asked alike.
struct Request {
    std::vector<std::string> files;  ///< paths; "-" is standard input
    bool all = false;                ///< texts of messages count too
    bool forks = false;              ///< resource forks count too
    bool json = false;
    bool quiet = false;

    ReportStyle style() const;

    /// Whether `attachment` is among what was asked for.
    bool wants(const codec::Attachment& attachment) const;
};

void add_request_options(CLI::App& command, Request& request);

/// All of `in` as a file that can be mapped. Fails with the system's reason.
Result<files::TemporaryFile> spool(std::istream& in);

/// The inputs of a run, opened together.
class Inputs {
  public:
    /// Opens those of `request.files` that can be read, and tells `report` of the others.
    Inputs(const Request& request, const Console& console, Report& report, ProgressBar& progress);

    /// Nullptr where no input could be read.
    const codec::Recovery* recovery() const { return recovery_ ? &*recovery_ : nullptr; }

    /// The paths that `attachment` is put together from, as the user named them.
    std::vector<std::string> sources_of(const codec::Attachment& attachment) const;

  private:
    std::vector<std::string> names_;  ///< of the inputs in `recovery_`, as the user wrote them
    std::optional<files::TemporaryFile> standard_input_;
    std::optional<codec::Recovery> recovery_;
};

}  // namespace quill::cli
