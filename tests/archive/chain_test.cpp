#include "archive/chain.h"

#include "archive/aes_writer.h"
#include "archive/ciphers/aes_cipher.h"
#include "archive/methods/methods.h"
#include "archive/streams.h"

#include <gmock/gmock.h>
#include <limits>
#include <string>

namespace quill::archive {
namespace {

constexpr std::uint64_t no_limit = std::numeric_limits<std::uint64_t>::max();
constexpr std::uint16_t deflate = 8;

struct Outcome {
    Passed passed;
    std::string content;
};

Outcome run(std::string_view data, Cipher* cipher, std::uint64_t most, std::size_t sink_takes = 1U << 30U) {
    Outcome outcome;
    Chain chain;
    const DecompressorPtr method = find_method(deflate)->make({deflate});
    outcome.passed = chain.run(data, cipher, *method, most, [&](std::string_view bytes) {
        outcome.content += bytes;
        return outcome.content.size() < sink_takes;
    });
    return outcome;
}

TEST(Chain, GivesTheContentAndCountsItsData) {
    const std::string content = tests::sample_content(1'000'000), packed = tests::deflated(content);
    const Outcome whole = run(packed + "more", nullptr, content.size());
    EXPECT_EQ(whole.content, content);
    EXPECT_EQ(whole.passed.state, StreamState::ended);
    EXPECT_EQ(whole.passed.read, packed.size());
    EXPECT_FALSE(whole.passed.too_long);
    EXPECT_EQ(whole.passed.authentic, std::nullopt);
    EXPECT_EQ(run(packed.substr(0, 1000), nullptr, no_limit).passed.state, StreamState::running);
}

TEST(Chain, GivesNoMoreThanTheStatedSize) {
    const std::string content = tests::sample_content(), packed = tests::deflated(content);
    for (const std::size_t most : {std::size_t{0}, std::size_t{1}, content.size() - 1}) {
        const Outcome cut = run(packed, nullptr, most);
        EXPECT_EQ(cut.content, content.substr(0, most));
        EXPECT_TRUE(cut.passed.too_long);
    }
}

TEST(Chain, StopsWithItsSink) {
    const Outcome stopped = run(tests::deflated(tests::sample_content(1'000'000)), nullptr, no_limit, 1000);
    EXPECT_TRUE(stopped.passed.stopped);
    EXPECT_LT(stopped.content.size(), 1'000'000U);
}

TEST(Chain, ChecksTheCodeAtTheEndOfTheDataWhereverTheStreamEnds) {
    const std::string content = tests::sample_content(2'000'000), packed = tests::deflated(content);
    const AesField field{2, 3, deflate};
    const std::string junk(700'000, 'j');
    const std::string data = tests::aes_encrypted(packed + junk, "sesame");
    const std::string_view bytes = data, code = bytes.substr(bytes.size() - aes_code_size);
    const std::string_view encrypted = bytes.substr(field.head_size(), packed.size() + junk.size());
    const auto read = [&](const std::string& what) {
        const auto cipher = make_aes_cipher(field, "sesame", bytes.substr(0, field.head_size()), code);
        return run(what, cipher.get(), content.size());
    };
    const Outcome whole = read(std::string(encrypted));
    EXPECT_EQ(whole.content, content);
    EXPECT_EQ(whole.passed.state, StreamState::ended);
    EXPECT_EQ(whole.passed.read, packed.size());
    EXPECT_EQ(whole.passed.authentic, true);
    std::string changed(encrypted);
    changed.back() = static_cast<char>(changed.back() ^ 1);
    const Outcome wrong = read(changed);
    EXPECT_EQ(wrong.content, content);
    EXPECT_EQ(wrong.passed.authentic, false);
}

}  // namespace
}  // namespace quill::archive
