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

/// The options that the commands that read messages share.
struct Request {
    FileNames names;  ///< "-" among the files is standard input
    ResultOptions results;
    bool all = false;    ///< texts of messages count too
    bool forks = false;  ///< resource forks count too

    /// Returns true if `attachment` is one of those requested.
    bool wants(const codec::Attachment& attachment) const;
};

void add_request_options(CLI::App& command, Request& request);

/// Copies all of `in` to a file that can be mapped. Fails with the system's reason.
Result<files::TemporaryFile> spool(std::istream& in);

/// One file to read.
struct Input {
    std::string name;             ///< as the user knows it; "-" is standard input
    std::string path;             ///< the path to open
    std::string beside;           ///< the directory for its results unless another was requested
    std::string walked = {};      ///< the directory that the user named instead of it; empty: the file itself
    bool held_something = false;  ///< a result, or a copy of one, came from it
};

/// The files of a run, with those of directories.
class InputList {
  public:
    /// Finds the readable files and reports the others.
    InputList(const Request& request, const Console& console, Report& report);

    /// Returns all of them in groups that can be open at the same time.
    std::vector<std::span<Input>> groups();

    /// Returns sentences about the inputs that held nothing: what was searched for and what each looks like instead.
    /// Inputs found in a directory are only counted.
    std::vector<std::string> empty_inputs() const;

  private:
    void add(const std::string& name, std::istream& standard_input, Report& report);
    void add_file(Input input, Report& report);

    std::vector<Input> inputs_;
    std::optional<files::TemporaryFile> standard_input_;
};

/// Inputs that are opened and scanned together.
class Inputs {
  public:
    /// Opens and scans the inputs; reports failures.
    Inputs(std::span<Input> inputs, const Request& request, Report& report, ProgressBar& progress);

    /// Returns nullptr if no input could be read.
    const codec::Recovery* recovery() const { return recovery_ ? &*recovery_ : nullptr; }

    /// Marks the inputs that `attachment` comes from as having held something.
    void mark(const codec::Attachment& attachment) const;

    /// Returns a function that names the input of each of `attachment`'s problems.
    NameOfInput input_of(const codec::Attachment& attachment) const;

    /// Returns the paths of the inputs that `attachment` was joined from, as the user named them.
    std::vector<std::string> sources_of(const codec::Attachment& attachment) const;

    /// Returns the default directory for `attachment`: that of its first part.
    const std::string& beside(const codec::Attachment& attachment) const;

  private:
    std::span<Input> inputs_;
    std::optional<codec::Recovery> recovery_;
};

}  // namespace quill::cli
