#pragma once

#include "cli/console.h"
#include "text/result.h"
#include "zip/extraction.h"

#include <string>
#include <string_view>

namespace quill::cli {

/// The failure for a name that was asked for and is not in the archive.
Error zip_member_missing();

/// Tells what an archive holds, or what became of its members, and sums it up.
class ZipReport {
  public:
    ZipReport(const Console& console, bool json, bool quiet) : console_(console), json_(json), quiet_(quiet) {}

    /// A member as the directory has it: name, size, compressed size, method, date and time, with tabs between.
    void list(const zip::Member& member);

    /// A member that was read: name, size, verdict, method; its problems on standard error. `path` is where it is now,
    /// empty where it was not written.
    void add(const zip::Member& member, const zip::MemberResult& result, const std::string& path);

    /// What is amiss with the archive as a whole.
    void archive_problems(std::string_view archive, const zip::Archive& opened);

    /// Says that `what` failed.
    void fail(std::string_view what, const Error& error);

    /// Says that the archive is not read, and why.
    void refuse(std::string_view archive, std::string_view reason);

    /// A name that was asked for and is not there.
    void missing(std::string_view name);

    ExitStatus finish();

  private:
    void put(std::string line, std::string json);

    const Console& console_;
    bool json_;
    bool quiet_;
    bool first_ = true;
    bool found_ = false;
    bool damaged_ = false;
    bool failed_ = false;
};

}  // namespace quill::cli
