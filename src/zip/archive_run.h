#pragma once

#include "shell/long_run.h"
#include "zip/archive_window.h"

#include <string>

namespace quill::zip {

/// A long run of the archive operations: its progress shows in the archive window, or in the main window while the
/// archive window is not shown yet, and a button there stops it.
class ArchiveRun {
  public:
    ArchiveRun(arcview& w, const std::string& doing);
    ~ArchiveRun();
    ArchiveRun(const ArchiveRun&) = delete;
    ArchiveRun& operator=(const ArchiveRun&) = delete;

    /// Shows the progress of a run outside the archive operations; returns false to stop it.
    bool goes_on(const Progress& done);

  private:
    NewZIP& archives_;
    Watch before_;
    shell::LongRun run_;
};

}  // namespace quill::zip
