#include "zip/archive_password.h"

#include "zip/archive_encryption.h"
#include "zip/archive_rows.h"
#include "zip/archive_run.h"

#include <algorithm>
#include <utility>

namespace quill::zip {
namespace {

constexpr auto password_again =
    "The password does not seem to be the right one for this ZIP file. Type in another one, or click Cancel to go on "
    "without the members that need it.";
constexpr auto password_to_add =
    "Files in this archive are encrypted. Type their password to encrypt the files that you add, too.";
constexpr auto wrong_password = "That password opens no file of this archive. Type in another one, or click Cancel.";
constexpr auto add_openly = "Without the password, the files that you add are not encrypted. Add them all the same?";

/// Returns true if the result proves that the password is the member's: a wrong one sometimes passes the first check of
/// the traditional encryption, but not the checksum of the content.
bool proves_password(const Member& member, const MemberResult& result) {
    const bool is_whole = result.verdict == Verdict::verified || result.verdict == Verdict::whole;
    return member.is_encrypted() && is_whole && (member.is_aes() || member.uncompressed_size != 0);
}

/// Those of `rows` that are encrypted and are read fastest.
std::vector<std::size_t> smallest_encrypted(const arcview& w, std::vector<std::size_t> rows) {
    constexpr std::size_t most = 4;
    const std::vector<Member>& members = w.listed->archive.members();
    std::erase_if(rows,
                  [&](std::size_t row) { return !members[row].is_encrypted() || members[row].uncompressed_size == 0; });
    std::stable_sort(rows.begin(), rows.end(), [&](std::size_t a, std::size_t b) {
        return members[a].uncompressed_size < members[b].uncompressed_size;
    });
    rows.resize(std::min(rows.size(), most));
    return rows;
}

/// Returns true where the password opens one of the members `rows`, or the user stops the trial.
bool opens_one_of(arcview& w, const std::vector<std::size_t>& rows, const std::string& password) {
    const Archive& archive = w.listed->archive;
    ArchiveRun run(w, "Trying the password");
    ExtractOptions options;
    options.password = password;
    options.limits = w.archives.library().limits;
    options.progress = [&run](const Progress& done) { return run.goes_on(done); };
    bool opens = false;
    const Status read = test_members(archive, rows, options, [&](const MemberResult& result) {
        opens = opens || proves_password(archive.members()[result.member], result);
    });
    return w.stop_wanted || (read.ok() && opens);
}

}  // namespace

PasswordTrial::PasswordTrial(arcview& w) : w_(w), password_(w.context.session.ZipPassword) {}

void PasswordTrial::note(const Member& member, const MemberResult& result) {
    if (!member.is_encrypted()) return;
    fits_ = fits_ || proves_password(member, result);
    is_refused_ = is_refused_ || result.needs_password;
    if (result.needs_password || result.verdict == Verdict::damaged) locked_.push_back(result.member);
}

std::vector<std::size_t> PasswordTrial::next_rows() {
    if (fits_) w_.context.session.ZipPassword = password_;
    // A member that looks damaged counts unless the password has opened another.
    if (locked_.empty() || (fits_ && !is_refused_)) return {};
    const std::string answer = w_.context.platform.input({.text = password_again, .secret = true});
    if (answer.empty()) return {};
    password_ = answer;
    fits_ = is_refused_ = false;
    return std::exchange(locked_, {});
}

bool find_password(arcview& w, const std::vector<std::size_t>& rows) {
    const std::vector<std::size_t> encrypted = smallest_encrypted(w, rows);
    if (encrypted.empty()) return true;
    std::string password = w.context.session.ZipPassword;
    while (!opens_one_of(w, encrypted, password)) {
        password = w.context.platform.input({.text = password_again, .secret = true});
        if (password.empty()) return false;
    }
    w.context.session.ZipPassword = password;
    return true;
}

bool is_ready_to_add(arcview& w) {
    std::string& password = w.context.session.ZipPassword;
    if (!has_encrypted_members(w) || !password.empty()) return true;
    const std::vector<std::size_t> encrypted = smallest_encrypted(w, all_rows(w));
    const char* text = password_to_add;
    while (true) {
        const std::string answer = w.context.platform.input({.text = text, .secret = true});
        if (answer.empty()) return w.context.platform.ask({.text = add_openly, .no_is_default = true});
        if (opens_one_of(w, encrypted, answer)) {
            password = answer;
            return true;
        }
        text = wrong_password;
    }
}

}  // namespace quill::zip
