#include "codec/recovery/recover.h"
#include "codec/writing/encode.h"
#include "files/directory.h"
#include "support/temporary_directory.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <random>
#include <string>
#include <string_view>

namespace quill::codec {
namespace {

/// Returns bytes of every value, with runs, line ends, dots and the escapes of all formats among them.
std::string sample(std::size_t size) {
    std::mt19937 random(static_cast<std::mt19937::result_type>(size));
    std::string out;
    while (out.size() < size) {
        const auto byte = static_cast<char>(random() % 256);
        out.append(random() % 16 == 0 ? random() % 300 : 1, random() % 32 == 0 ? '\x90' : byte);
    }
    out.resize(size);
    return out;
}

class RoundTrip : public testing::TestWithParam<std::string> {
  protected:
    /// Encodes `bytes`, decodes the result, and expects them back.
    void expect_back(const std::string& bytes, const EncodeOptions& options = {}) {
        dir.write("in.bin", bytes);
        const auto encoded = encode_file("in.bin", "out", *output_format(GetParam()), options);
        ASSERT_TRUE(encoded) << encoded.error().text;
        const auto recovery = Recovery::open(*encoded);
        ASSERT_TRUE(recovery);
        ASSERT_EQ(recovery->attachments().size(), 1U) << bytes.size() << " bytes";
        const Attachment& attachment = recovery->attachments()[0];
        EXPECT_EQ(attachment.name, "in.bin");
        const auto written = recovery->write(attachment, "back", files::OnCollision::replace);
        ASSERT_TRUE(written) << bytes.size() << " bytes: " << written.error().text;
        EXPECT_TRUE(written->outcome.problems.empty())
            << bytes.size() << " bytes: " << written->outcome.problems[0].text;
        EXPECT_LE(written->outcome.verdict, Verdict::whole);
        EXPECT_TRUE(dir.read("back") == bytes) << bytes.size() << " bytes";
        for (const std::string& path : *encoded) files::remove_file(path);
    }

    tests::TemporaryDirectory dir;
};

TEST_P(RoundTrip, EverySizeComesBack) {
    for (std::size_t size = 0; size <= 300; ++size) expect_back(sample(size));
    for (const std::size_t size : {10'000U, 5'000'001U}) expect_back(sample(size));
}

TEST_P(RoundTrip, EveryByteComesBackAloneAndInRuns) {
    for (const std::size_t count : {1U, 2U, 3U, 4U, 255U, 256U, 600U}) {
        std::string runs;
        for (unsigned byte = 0; byte < 256; ++byte) runs.append(count, static_cast<char>(byte));
        expect_back(runs);
    }
}

TEST_P(RoundTrip, PartsComeBackAsOneFile) {
    if (output_format(GetParam())->part_unit == 0) return;  // this format has none
    expect_back(sample(10'000), {.part_size = 999});
    expect_back(sample(1'000'000), {.part_size = 300'000});
}

TEST_P(RoundTrip, LinesOfOtherLengthsComeBack) {
    const OutputFormat& format = *output_format(GetParam());
    if (format.line_limit == 0) return;  // this format has one length
    for (std::size_t length = format.line_unit; length <= format.line_limit; length += format.line_unit * 31) {
        expect_back(sample(5000), {.line_length = length});
        if (HasFailure()) FAIL() << "lines of " << length;
    }
}

INSTANTIATE_TEST_SUITE_P(EncodeAndDecode, RoundTrip, testing::Values("uue", "mime", "binhex", "xxe", "yenc"),
                         [](const auto& tested) { return tested.param; });

}  // namespace
}  // namespace quill::codec
