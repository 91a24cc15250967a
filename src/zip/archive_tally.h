#pragma once

#include "zip/archive_rows.h"

#include <array>
#include <cstddef>
#include <string>
#include <vector>

namespace quill::zip {

/// Counts the results of members in a run that read them, and reports them.
class Tally {
  public:
    void add(const Archive& archive, const MemberResult& result);

    std::size_t of(RowCondition condition) const { return counts_.at(static_cast<std::size_t>(condition)); }
    std::size_t all() const;
    /// Returns the number of members without problems.
    std::size_t good() const { return of(RowCondition::verified) + of(RowCondition::whole); }

    /// Returns "4 verified, 1 damaged".
    std::string counts() const;
    /// Returns the first few damaged members, each with its reason on its own line.
    std::string reasons() const;

  private:
    std::array<std::size_t, condition_count> counts_{};
    std::vector<std::string> reasons_;
    std::size_t without_reason_ = 0;
};

}  // namespace quill::zip
