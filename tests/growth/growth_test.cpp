#include "codec/encoded.h"
#include "codec/recovery/recover.h"
#include "support/temporary_directory.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

namespace {
std::uint64_t steps = 0;
}

/// Called by the counted decoder at each step, a stretch of code without a branch.
extern "C" void __sanitizer_cov_trace_pc() {
    ++steps;
}

namespace quill::codec {
namespace {

using tests::base64;
using tests::noise;

std::string repeated(std::size_t n, const std::function<std::string(std::string)>& piece) {
    std::string out;
    for (std::size_t i = 0; i < n; ++i) out += piece(std::to_string(i));
    return out;
}

std::string yenc_part(const std::string& number, const std::string& more, const std::string& end) {
    return "=ybegin part=" + number + " " + more + " line=128 name=a\nk\n=yend size=1 part=" + number + " " + end +
           "\n";
}

const std::string uu_row = "M" + std::string(60, 'A') + "\n";
const std::string base64_row = std::string(76, 'Q') + "\n";
const std::string body_head = "Content-Type: x/y; name=a\nContent-Transfer-Encoding: base64\n\n";
const std::string binhex_head = "(This file must be converted with BinHex 4.0)\n\n:";

/// An input that grows with a number, built to make some part of the decoder start over.
struct Nasty {
    std::string name;
    std::size_t size = 0;  ///< the smaller number
    std::function<std::string(std::size_t)> make;
};

const std::vector<Nasty> nasty_inputs = {
    {"separators", 500, [](std::size_t n) { return repeated(n, [](auto) { return "From a 1:23\nSubject: x\n"; }); }},
    {"lines like separators", 1000,
     [](std::size_t n) { return "A: b\n\n" + repeated(n, [](auto) { return "From a 1:23\nx\n"; }); }},
    {"header fields", 1000, [](std::size_t n) { return repeated(n, [](auto) { return "Subject: x\n"; }) + "\n"; }},
    {"blanks in a header", 1000,
     [](std::size_t n) { return "Subject: x\n" + repeated(n, [](auto) { return " \n"; }) + "x\n"; }},
    {"blank lines between fields", 500,
     [](std::size_t n) { return repeated(n, [](auto) { return "Subject: x\n \nX: y\n"; }); }},
    {"boundaries within each other", 200,
     [](std::size_t n) {
         return repeated(n, [](auto i) { return "Content-Type: multipart/x; boundary=b" + i + "\n\n--b" + i + "\n"; });
     }},
    {"parts", 500,
     [](std::size_t n) {
         return "Content-Type: multipart/x; boundary=b\n\n" +
                repeated(n, [](auto) { return "--b\nContent-Type: x/y; name=a\n\nx\n"; });
     }},
    {"lines like boundaries", 1000,
     [](std::size_t n) {
         return "Content-Type: multipart/x; boundary=b\n\n--b\n" + body_head + base64_row +
                repeated(n, [](auto) { return "QUJD--bb\n"; });
     }},
    {"headers in Base64", 500,
     [](std::size_t n) { return body_head + repeated(n, [](auto) { return base64_row + "X: y\n"; }); }},
    {"headers in a piece of a message", 500,
     [](std::size_t n) {
         return "Content-Type: message/partial; id=q; number=1; total=1\n\n" +
                repeated(n, [](auto) { return "\nSubject: x\nX: y\n"; });
     }},
    {"foreign lines in Base64", 500,
     [](std::size_t n) { return body_head + repeated(n, [](auto) { return base64_row + "(no data)\n"; }); }},
    {"text after Base64", 1000,
     [](std::size_t n) { return body_head + base64_row + repeated(n, [](auto) { return "not data\n"; }); }},
    {"padding in Base64", 1000,
     [](std::size_t n) { return body_head + repeated(n, [](auto) { return "QUJDREVGR0hJSktMQUI=\n"; }); }},
    {"tags in Base64", 1000,
     [](std::size_t n) { return body_head + repeated(n, [](auto) { return "QUJDREVGR0hJSktM<br>"; }); }},
    {"bare Base64 with gaps", 500,
     [](std::size_t n) { return repeated(n, [](auto) { return base64_row + base64_row + base64_row + "(no)\n"; }); }},
    {"bare Base64 in rows of other lengths", 500,
     [](std::size_t n) {
         return repeated(n, [](auto i) { return base64_row + base64_row + base64_row + i + "\n\n\n"; });
     }},
    {"UUE files of one name", 500,
     [](std::size_t n) { return repeated(n, [](auto) { return "begin 644 a\n#0V%T\n`\nend\n"; }); }},
    {"UUE files without an end", 500,
     [](std::size_t n) { return repeated(n, [](auto) { return "begin 644 a\n" + uu_row; }); }},
    {"UUE in pieces without numbers", 500,
     [](std::size_t n) {
         return "begin 644 a\n" + repeated(n, [](auto) { return uu_row + uu_row + "-\n-\n-\n-\n-\n-\n-\n-\n-\n"; });
     }},
    {"copies of a UUE part", 200,
     [](std::size_t n) {
         return repeated(n, [](auto i) {
             return "\npart 2 of 3\n\n" + tests::uu_lines(noise(90, static_cast<unsigned>(std::stoul(i))))[0] + "\n" +
                    uu_row;
         });
     }},
    {"numbers of UUE parts", 200,
     [](std::size_t n) {
         return repeated(n, [](auto i) { return "\npart " + i + " of 99999\n\n" + uu_row + uu_row; });
     }},
    {"short UUE lines", 1000,
     [](std::size_t n) { return "begin 644 a\n" + uu_row + repeated(n, [](auto) { return "MAA\n" + uu_row; }); }},
    {"begin lines in prose", 1000,
     [](std::size_t n) { return repeated(n, [](auto) { return "begin 644 a\nprose\n"; }); }},
    {"yEnc posts", 500,
     [](std::size_t n) { return repeated(n, [](auto) { return "=ybegin line=1 size=1 name=a\nk\n=yend size=1\n"; }); }},
    {"yEnc posts without an end", 500,
     [](std::size_t n) { return repeated(n, [](auto) { return "=ybegin line=1 size=9 name=a\nk\n"; }); }},
    {"copies of a yEnc part", 300,
     [](std::size_t n) { return repeated(n, [](auto) { return yenc_part("1", "total=2 size=2", ""); }); }},
    {"yEnc parts of other files", 300,
     [](std::size_t n) {
         return repeated(n,
                         [](auto i) { return yenc_part("1", "total=2 size=2", "pcrc32=" + i + " crc32=" + i + "0"); });
     }},
    {"BinHex beginnings", 300, [](std::size_t n) { return repeated(n, [](auto) { return binhex_head + "\n"; }); }},
    {"BinHex lines", 300,
     [](std::size_t n) {
         return repeated(
             n, [](auto) { return "part 2 of 3\n" + std::string(64, '9') + "\n" + std::string(64, '8') + "\n"; });
     }},
    {"quoted-printable", 2000,
     [](std::size_t n) {
         return "Content-Type: x/y; name=a\nContent-Transfer-Encoding: quoted-printable\n\n" +
                repeated(n, [](auto) { return "= \n=x  \n"; });
     }},
    {"pieces of messages", 200,
     [](std::size_t n) {
         return repeated(n, [](auto i) {
             return "From a 1:23\nContent-Type: message/partial; id=q; number=" + i + "\n\nbegin 644 a\n" + uu_row +
                    "\n";
         });
     }},
    {"encoded messages", 100,
     [](std::size_t n) {
         const std::string inner = "Subject: x\n\nbegin 644 a\n#0V%T\n`\nend\n";
         return "Content-Type: multipart/x; boundary=b\n\n" + repeated(n, [&](auto) {
                    return "--b\nContent-Type: message/rfc822\nContent-Transfer-Encoding: base64\n\n" + base64(inner) +
                           "\n";
                });
     }},
    {"encoded messages that are too deep", 100,
     [](std::size_t n) {
         std::string inner;
         for (int i = 0; i < 120; ++i) {
             const std::string b = "b" + std::to_string(i);
             inner += "Content-Type: multipart/x; boundary=" + b + "\n\n--" + b + "\n";
         }
         return "Content-Type: multipart/x; boundary=b\n\n" + repeated(n / 10, [&](auto) {
                    return "--b\nContent-Type: message/rfc822\nContent-Transfer-Encoding: base64\n\n" + base64(inner) +
                           "\n";
                });
     }},
};

/// Returns the steps of finding and decoding all files in `text`.
std::uint64_t steps_of(const std::string& text) {
    const tests::TemporaryDirectory dir;
    const std::vector<std::string> paths = {dir.write("in", text)};
    steps = 0;
    const Result<Recovery> recovery = Recovery::open(paths);
    EXPECT_TRUE(recovery);
    if (!recovery) return 0;
    for (const Attachment& attachment : recovery->attachments()) recovery->check(attachment);
    return steps;
}

class Growth : public testing::TestWithParam<Nasty> {};

TEST_P(Growth, FourTimesTheInputTakesHardlyMoreThanFourTimesTheSteps) {
    constexpr double most = 5.0;  // a logarithm, and one-time allocations
    const Nasty& nasty = GetParam();
    const std::uint64_t small = steps_of(nasty.make(nasty.size));
    const std::uint64_t large = steps_of(nasty.make(4 * nasty.size));
    ASSERT_GT(small, 1000U) << "the steps are not counted";
    EXPECT_LT(static_cast<double>(large), most * static_cast<double>(small)) << small << " and " << large;
}

INSTANTIATE_TEST_SUITE_P(Inputs, Growth, testing::ValuesIn(nasty_inputs), [](const auto& parameter) {
    std::string name = parameter.param.name;
    for (char& c : name) c = c == ' ' || c == '-' ? '_' : c;
    return name;
});

}  // namespace
}  // namespace quill::codec
