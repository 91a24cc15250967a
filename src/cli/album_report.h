#pragma once

#include "cli/results.h"
#include "pics/album.h"
#include "text/result.h"

#include <string>
#include <string_view>

namespace quill::cli {

/// Lists an album, or reports the results for its pictures, and summarises them.
class AlbumReport {
  public:
    AlbumReport(const Console& console, ReportStyle style) : console_(console), results_(console, style) {}

    /// Prints a picture as the album lists it: name, size, verdict, with tabs between; its problems on standard error.
    void list(const pics::Entry& entry);

    /// Prints a picture that was extracted to `path` (empty: nothing was written) in the same way.
    void add(const pics::Entry& entry, const std::string& path, bool already_there);

    /// Prints the new album: name and size.
    void made(const std::string& path, std::uint64_t size, std::size_t pictures);

    void problems(std::string_view album, const std::vector<report::Problem>& problems);
    void fail(std::string_view what, const Error& error);
    /// Prints a remark that does not change the result.
    void note(std::string_view what, std::string_view text);

    ExitStatus finish();

  private:
    void put(const pics::Entry& entry, const std::string& shown, const std::string& path, bool already_there);

    const Console& console_;
    Results results_;
    bool found_ = false;
    bool damaged_ = false;
    bool failed_ = false;
};

}  // namespace quill::cli
