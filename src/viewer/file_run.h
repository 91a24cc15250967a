#pragma once

#include "shell/long_run.h"
#include "shell/session.h"
#include "viewer/save_pictures.h"

#include <cstdint>
#include <string>

namespace quill::viewer {

/// A long run shown in the progress panel, a separate window.
class FileRun {
  public:
    FileRun(shell::Context& context, const std::string& doing);
    ~FileRun();
    FileRun(const FileRun&) = delete;
    FileRun& operator=(const FileRun&) = delete;

    /// Shows how much of the file is done. Returns false if the user wants to stop.
    bool goes_on(std::uint64_t done, std::uint64_t total);

    /// Does the same for file number `index`, from 0, of `count`.
    bool goes_on(std::uint64_t done, std::uint64_t total, std::size_t index, std::size_t count);

  private:
    shell::Context& context_;
    SavPic& panel_;
    shell::LongRun run_;
};

}  // namespace quill::viewer
