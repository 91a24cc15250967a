#include "codec/recovery/recover.h"
#include "support/temporary_directory.h"

#include <gtest/gtest.h>

#include <string>
#include <unistd.h>
#include <vector>

namespace quill::codec {
namespace {

/// Returns a mail with a plain attachment of many lines, whose bytes are the same as in the file.
std::string plain_mail() {
    std::string mail = "From: ada@example.org\r\nMIME-Version: 1.0\r\nContent-Type: text/plain; name=a.txt\r\n\r\n";
    for (int i = 0; i < 3000; ++i) mail += "one line of the attachment\r\n";
    return mail;
}

TEST(ChangedInput, ThatWasCutOffIsSaidInWordsThoughTheSystemCannotReadItsBytes) {
    const tests::TemporaryDirectory dir;
    dir.write("mail", plain_mail());
    const Recovery recovery = *Recovery::open(std::vector<std::string>{"mail"});
    ASSERT_EQ(recovery.attachments().size(), 1U);
    ASSERT_EQ(truncate("mail", 200), 0);
    const auto written = recovery.write(recovery.attachments()[0], "a.txt", files::OnCollision::fail);
    ASSERT_FALSE(written);
    EXPECT_EQ(written.error(), files::changed_while_read());
    EXPECT_EQ(dir.names(), std::vector<std::string>{"mail"});
}

}  // namespace
}  // namespace quill::codec
