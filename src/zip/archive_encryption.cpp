#include "zip/archive_encryption.h"

#include <algorithm>

namespace quill::zip {
namespace {

constexpr auto kind_question =
    "How are files protected that you add to this archive from now on?\n\nAES-256 is safe with a good password. The "
    "traditional way opens in every program, old ones too, but can be broken.";
constexpr auto title = "Password for added files";

/// Asks for a new password, twice; returns an empty one if the user decides against it.
std::string ask_for_new_password(platform::Platform& platform) {
    for (;;) {
        const std::string password =
            platform.input({.text = "Type the password for the files that you add.", .title = title, .secret = true});
        if (password.empty()) return {};
        const std::string again = platform.input({.text = "Type it once more.", .title = title, .secret = true});
        if (again == password || again.empty()) return again;
        platform.message("The two passwords differ. Type them again.", title);
    }
}

}  // namespace

bool has_encrypted_members(const arcview& w) {
    if (!w.listed) return false;
    const std::vector<Member>& members = w.listed->archive.members();
    return std::any_of(members.begin(), members.end(), [](const Member& member) { return member.is_encrypted(); });
}

void choose_encryption(arcview& w) {
    const Unwatched unwatched(w);
    enum { aes, traditional, none, cancel };
    const std::size_t answer =
        w.context.platform.choose({.text = kind_question,
                                   .title = title,
                                   .answers = {"&AES-256", "&Traditional", "&No password", "&Cancel"},
                                   .default_answer = aes,
                                   .escape_answer = cancel});
    if (answer == cancel) return;
    const std::string password = answer == none ? std::string() : ask_for_new_password(w.context.platform);
    if (answer != none && password.empty()) return;
    w.context.session.ZipPassword = password;
    w.archives.library().new_encryption =
        answer == aes ? archive::Encryption::aes256 : archive::Encryption::traditional;
}

}  // namespace quill::zip
