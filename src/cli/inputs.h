#pragma once

#include "cli/file_names.h"
#include "cli/progress.h"
#include "cli/report.h"
#include "codec/recovery/recover.h"
#include "files/temporary_file.h"

#include <istream>
#include <optional>
#include <span>
#include <string>
#include <vector>

namespace CLI {
class App;
}

namespace quill::cli {

/// What the commands that read messages are asked alike.
struct Request {
    FileNames names;  ///< "-" among the files is standard input
    ResultOptions results;
    bool all = false;    ///< texts of messages count too
    bool forks = false;  ///< resource forks count too

    /// Whether `attachment` is among what was asked for.
    bool wants(const codec::Attachment& attachment) const;
};

void add_request_options(CLI::App& command, Request& request);

/// All of `in` as a file that can be mapped. Fails with the system's reason.
Result<files::TemporaryFile> spool(std::istream& in);

/// One file to read.
struct Input {
    std::string name;    ///< as the user knows it; "-" is standard input
    std::string path;    ///< what opens it
    std::string beside;  ///< the directory that its results go to unless another was asked for
};

/// The files of a run, with those of directories.
class InputList {
  public:
    /// Finds those that can be read, and reports the others.
    InputList(const Request& request, const Console& console, Report& report);

    /// All of them, in groups that can be open at the same time.
    std::vector<std::span<const Input>> groups() const;

    /// Returns a sentence about inputs in which nothing was found: what was looked for and, of a single one, what it
    /// looks like instead. Empty where there are none.
    std::string nothing_found() const;

  private:
    void add(const std::string& name, std::istream& standard_input, Report& report);
    void add_file(Input input, Report& report);

    std::vector<Input> inputs_;
    std::optional<files::TemporaryFile> standard_input_;
};

/// Inputs that are opened and scanned together.
class Inputs {
  public:
    /// Reports what fails.
    Inputs(std::span<const Input> inputs, const Request& request, Report& report, ProgressBar& progress);

    /// Nullptr where no input could be read.
    const codec::Recovery* recovery() const { return recovery_ ? &*recovery_ : nullptr; }

    /// The paths that `attachment` is put together from, as the user named them.
    std::vector<std::string> sources_of(const codec::Attachment& attachment) const;

    /// The directory that `attachment` goes to unless another was asked for: that of its first part.
    const std::string& beside(const codec::Attachment& attachment) const;

  private:
    std::span<const Input> inputs_;
    std::optional<codec::Recovery> recovery_;
};

}  // namespace quill::cli
