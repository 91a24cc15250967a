#pragma once

#include "archive/extracting/extraction.h"
#include "cli/results.h"
#include "text/result.h"

#include <string>
#include <string_view>

namespace quill::cli {

/// Returns the failure for a requested name that is not in the archive.
Error zip_member_missing();

/// Lists an archive, or reports the results for its members, and summarises them.
class ZipReport {
  public:
    ZipReport(const Console& console, ReportStyle style) : console_(console), results_(console, style) {}

    /// Prints a member as the directory lists it: name, size, compressed size, method, date and time, with tabs
    /// between.
    void list(const zip::Member& member);

    /// Prints a member that was read: name, size, verdict, method; its problems on standard error. `path` is where it
    /// was written, empty if it was not.
    void add(const zip::Member& member, const zip::MemberResult& result, const std::string& path);

    /// Reports the problems of the archive as a whole.
    void archive_problems(std::string_view archive, const zip::Archive& opened);

    /// Reports that `what` failed.
    void fail(std::string_view what, const Error& error);

    /// Reports that the archive was refused, and why.
    void refuse(std::string_view archive, std::string_view reason);

    /// Reports a requested name that is not in the archive.
    void missing(std::string_view name);

    ExitStatus finish();

  private:
    void report_problems(const zip::Member& member, const zip::MemberResult& result);

    const Console& console_;
    Results results_;
    bool found_ = false;
    bool damaged_ = false;
    bool failed_ = false;
};

}  // namespace quill::cli
