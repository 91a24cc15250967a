#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace quill::zip {

/// Members selected by their names, or by the names of directories that contain them, with or without a slash at the
/// end. A query takes time linear in the member's name, however many names there are.
class MemberChoice {
  public:
    /// Selects by `names`, which must outlive it. No names select all members.
    explicit MemberChoice(const std::vector<std::string>& names);

    /// Returns true if one of the names selects the member.
    bool has(std::string_view member_name);
    /// Returns the names that have selected no member so far.
    std::vector<std::string> unmatched() const;
    /// Returns how many names have been compared with a part of a member's name.
    std::uint64_t steps() const { return steps_; }

  private:
    bool asks(std::uint64_t hash, std::string_view prefix, bool is_chosen);

    const std::vector<std::string>& names_;
    std::unordered_multimap<std::uint64_t, std::size_t> by_hash_;
    std::vector<bool> matched_;
    std::uint64_t steps_ = 0;
};

}  // namespace quill::zip
