#pragma once

#include "zip/archive_window.h"

#include <cstddef>
#include <string>
#include <vector>

/// The password of the open archive. Only one that has opened a member is kept: additions would be locked with a wrong
/// one.
namespace quill::zip {

/// Reads members with one password after another, until all are open or the user has no more.
class PasswordTrial {
  public:
    /// Begins with the known password.
    explicit PasswordTrial(arcview& w);

    /// Returns the password to read with.
    const std::string& password() const { return password_; }

    /// Notes the result for a member with it.
    void note(const Member& member, const MemberResult& result);

    /// Keeps the password if it has opened a member. Asks for another one if members need it, and returns their rows;
    /// none if no members need one or the user has no more passwords.
    std::vector<std::size_t> next_rows();

    /// Returns true if members need a password and the last one has opened none.
    bool has_failed() const { return !locked_.empty() && !fits_; }

  private:
    arcview& w_;
    std::string password_;
    bool fits_ = false;                ///< it has opened a member
    bool is_refused_ = false;          ///< it is certainly not the password of some member
    std::vector<std::size_t> locked_;  ///< members that it did not open
};

/// Makes sure that the password opens one of the members `rows` that are encrypted, and asks for another one until it
/// does: a wrong one may pass the first check of the traditional encryption and give wrong bytes. Returns false where
/// the user has none.
bool find_password(arcview& w, const std::vector<std::size_t>& rows);

/// Returns true where files can be added as the archive's own are: none is encrypted, or their password is known. Asks
/// for it, and where the user does not know it, whether the files may go in without one.
bool is_ready_to_add(arcview& w);

}  // namespace quill::zip
