#include "archive/container/member_reader.h"

#include "archive/aes_writer.h"
#include "archive/archive_builder.h"
#include "archive/ciphers/traditional_cipher.h"
#include "archive/streams.h"
#include "checksum/checksum.h"

#include <gmock/gmock.h>
#include <string>
#include <vector>

namespace quill::zip {
namespace {

using tests::ArchiveBuilder;
using tests::Odd;

struct Read {
    Content content;
    std::string bytes;
};

Read read_first(const std::string& archive_bytes, const std::string& password = {}) {
    const Result<Archive> archive = Archive::parse(archive_bytes);
    EXPECT_TRUE(archive.ok());
    Read read;
    MemberReader reader(*archive, password);
    read.content = reader.read(archive->members().at(0), [&](std::string_view bytes) {
        read.bytes += bytes;
        return true;
    });
    EXPECT_EQ(read.content.size, read.bytes.size());
    return read;
}

std::string kinds(const Read& read) {
    std::string out;
    for (const Problem& problem : read.content.problems)
        out += (out.empty() ? "" : " ") + std::string(word_of(problem));
    return out;
}

/// A small content in each method.
struct Packed {
    const char* what;
    std::uint16_t method;
    std::uint16_t flags;
    std::string bytes;
};

constexpr std::string_view text = tests::ppmd_content;

std::vector<Packed> packed_texts() {
    constexpr std::uint16_t end_marker = 2, large_window_and_literals = 6;
    const std::string content(text);
    return {
        {"stored", 0, 0, content},
        {"shrunk", 1, 0, tests::shrunk(content)},
        {"reduced", 3, 0, tests::reduced(content)},
        {"imploded", 6, large_window_and_literals, tests::imploded(content, 12)},
        {"deflated", 8, 0, tests::deflated(content)},
        {"deflate64", 9, 0, tests::deflated(content)},
        {"bzip2", 12, 0, tests::bzipped(content)},
        {"LZMA", 14, end_marker, tests::lzma_compressed(content, true)},
        {"LZMA without a mark", 14, 0, tests::lzma_compressed(content, false)},
        {"Zstandard", 93, 0, tests::zstandard_compressed(content)},
        {"xz", 95, 0, tests::xzipped(content)},
        {"PPMd", 98, 0, tests::ppmd_stream()},
    };
}

std::string traditionally_encrypted(std::string bytes) {
    archive::TraditionalCipher cipher("sesame");
    const std::string header = cipher.make_header(static_cast<std::uint8_t>(quill::crc32(0, text) >> 24U));
    cipher.encrypt(bytes);
    return header + bytes;
}

Odd plain_member(const Packed& packed, const std::string& bytes) {
    return {.method = packed.method, .flags = packed.flags, .packed = bytes};
}

Odd traditional_member(const Packed& packed, const std::string& bytes) {
    const auto flags = static_cast<std::uint16_t>(packed.flags | encrypted_flag);
    return {.method = packed.method, .flags = flags, .packed = bytes};
}

Odd aes_member(const Packed& packed, const std::string& bytes, std::uint16_t version) {
    const auto flags = static_cast<std::uint16_t>(packed.flags | encrypted_flag);
    Odd odd{.method = method_aes, .flags = flags, .packed = bytes};
    odd.extra = odd.local_extra = tests::aes_field(version, packed.method);
    if (version == 2) odd.crc = 0;
    return odd;
}

Read read_member(const Odd& odd) {
    return read_first(ArchiveBuilder().add("a", text, odd).finish(), "sesame");
}

TEST(MemberReader, SaysWhatIsWrongAndGivesWhatThereIs) {
    const std::string deflated("\xCB\x48\xCD\xC9\xC9\x07\x00", 7);  // "hello"
    const struct {
        const char* what;
        Odd odd;
        Verdict verdict;
        const char* bytes;
        const char* problems;
    } cases[] = {
        {"deflated", {.method = 8, .packed = deflated}, Verdict::verified, "hello", ""},
        {"bad CRC", {.crc = 1}, Verdict::damaged, "hello", "bad-crc"},
        {"stated too long", {.stated_size = 9}, Verdict::damaged, "hello", "wrong-size"},
        {"deflated, stated too short",
         {.method = 8, .packed = deflated, .stated_size = 2},
         Verdict::damaged,
         "he",
         "wrong-size"},
        {"deflated, stated enormous",
         {.method = 8, .packed = deflated, .stated_size = 0xF0000000},
         Verdict::damaged,
         "hello",
         "wrong-size"},
        {"deflated and cut", {.method = 8, .packed = deflated.substr(0, 4)}, Verdict::damaged, nullptr, "cut"},
        {"deflated and broken", {.method = 8, .packed = "\xFF\xFF\xFF\xFF"}, Verdict::refused, "", "bad-data"},
        {"another name inside", {.local_name = "evil"}, Verdict::verified, "hello", "names-differ"},
        {"another content by its own header",
         {.local_size = 2, .local_packed_size = 2, .local_crc = quill::crc32(0, "he")},
         Verdict::verified,
         "hello",
         "header-differs contents-differ"},
        {"an unknown method", {.method = 77}, Verdict::refused, "", "unsupported"},
        {"a method with a name", {.method = 97}, Verdict::refused, "", "unsupported"},
        {"strong encryption", {.flags = encrypted_flag | strong_encryption_flag}, Verdict::refused, "", "unsupported"},
        {"no password", {.flags = encrypted_flag}, Verdict::refused, "", "password"},
        {"a member where none begins", {.offset = 3}, Verdict::refused, "", "no-local-header"},
        {"stored, stated too short", {.stated_size = 2}, Verdict::damaged, "he", "wrong-size"},
        {"stated to have nothing", {.crc = 0, .stated_size = 0}, Verdict::damaged, "", "wrong-size"},
        {"bytes behind the stream", {.method = 8, .packed = deflated + "x"}, Verdict::verified, "hello", "extra-data"},
        {"a member far outside", {.offset = 0xFFFFFFF0}, Verdict::refused, "", "no-local-header"},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.what);
        const Read read = read_first(ArchiveBuilder().add("a", "hello", c.odd).finish());
        EXPECT_EQ(name_of(read.content.verdict), name_of(c.verdict));
        EXPECT_EQ(kinds(read), c.problems);
        if (c.bytes != nullptr) {
            EXPECT_EQ(read.bytes, c.bytes);
        }
    }
}

TEST(MemberReader, ReadsEveryMethodInEveryCipher) {
    for (const Packed& packed : packed_texts()) {
        const std::string aes = tests::aes_encrypted(packed.bytes, "sesame");
        for (const Odd& odd :
             {plain_member(packed, packed.bytes), traditional_member(packed, traditionally_encrypted(packed.bytes)),
              aes_member(packed, aes, 1), aes_member(packed, aes, 2)}) {
            SCOPED_TRACE(std::string(packed.what) + ", method " + std::to_string(odd.method) + odd.extra.substr(0, 5));
            const Read read = read_member(odd);
            EXPECT_EQ(name_of(read.content.verdict), "verified");
            EXPECT_EQ(kinds(read), "");
            EXPECT_EQ(read.bytes, text);
        }
    }
}

/// Calls check(changed) with copies of `bytes` that differ in one bit, at each place.
template <class Check>
void with_each_byte_changed(const std::string& bytes, Check&& check) {
    for (std::size_t at = 0; at < bytes.size(); ++at) {
        std::string changed = bytes;
        changed[at] = static_cast<char>(changed[at] ^ (1 << at % 8));
        SCOPED_TRACE(at);
        check(changed);
    }
}

TEST(MemberReader, CallsNoChangedBytesOfAesVerified) {
    for (const Packed& packed : packed_texts()) {
        SCOPED_TRACE(packed.what);
        with_each_byte_changed(tests::aes_encrypted(packed.bytes, "sesame"), [&](const std::string& changed) {
            for (const std::uint16_t version : {std::uint16_t{1}, std::uint16_t{2}}) {
                const Read read = read_member(aes_member(packed, changed, version));
                EXPECT_TRUE(read.content.verdict == Verdict::damaged || read.content.verdict == Verdict::refused);
                EXPECT_THAT(kinds(read), ::testing::AnyOf(::testing::HasSubstr("bad-code"), "password"));
            }
        });
    }
}

TEST(MemberReader, CallsNoOtherBytesThanTheContentVerified) {
    for (const Packed& packed : packed_texts()) {
        SCOPED_TRACE(packed.what);
        const auto check = [&](const Odd& odd) {
            const Read read = read_member(odd);
            EXPECT_NE(read.content.verdict, Verdict::whole);
            EXPECT_TRUE(read.content.verdict != Verdict::verified || read.bytes == text);
        };
        with_each_byte_changed(packed.bytes, [&](const std::string& bytes) { check(plain_member(packed, bytes)); });
        with_each_byte_changed(traditionally_encrypted(packed.bytes),
                               [&](const std::string& bytes) { check(traditional_member(packed, bytes)); });
    }
}

TEST(MemberReader, ReadsTheAuthenticationCodeWhereverTheStreamEnds) {
    for (const Packed& packed : packed_texts()) {
        SCOPED_TRACE(packed.what);
        if (packed.method < 2 || packed.method == 98) continue;  // these read all of the data
        std::string aes = tests::aes_encrypted(packed.bytes + std::string(100, 'x'), "sesame");
        Read read = read_member(aes_member(packed, aes, 2));
        EXPECT_EQ(name_of(read.content.verdict), "verified");
        EXPECT_EQ(kinds(read), "extra-data");
        constexpr std::size_t before_code = 12;
        aes[aes.size() - before_code] = static_cast<char>(aes[aes.size() - before_code] ^ 1);
        read = read_member(aes_member(packed, aes, 2));
        EXPECT_EQ(name_of(read.content.verdict), "damaged");
        EXPECT_EQ(read.bytes, text);
    }
}

TEST(MemberReader, SaysWhatIsWrongWithAesMembers) {
    const Packed stored{"stored", 0, 0, std::string(text)}, unknown{"unknown", 77, 0, std::string(text)};
    const std::string aes = tests::aes_encrypted(text, "sesame");
    const auto with = [&](auto&& change) {
        Odd odd = aes_member(stored, aes, 2);
        change(odd);
        return odd;
    };
    const struct {
        const char* what;
        Odd odd;
        Verdict verdict;
        const char* problems;
    } cases[] = {
        {"of another password", aes_member(stored, tests::aes_encrypted(text, "another"), 2), Verdict::refused,
         "password"},
        {"without a field", with([](Odd& odd) { odd.extra = ""; }), Verdict::refused, "unsupported"},
        {"of an unknown strength", with([](Odd& odd) { odd.extra = tests::aes_field(2, 0, 4); }), Verdict::refused,
         "unsupported"},
        {"of an unknown method", aes_member(unknown, aes, 2), Verdict::refused, "unsupported"},
        {"without its flag", with([](Odd& odd) { odd.flags = 0; }), Verdict::verified, ""},
        {"of two methods", with([](Odd& odd) { odd.local_extra = tests::aes_field(2, 8); }), Verdict::damaged,
         "header-differs"},
        {"AE-1 without a CRC", with([](Odd& odd) { odd.extra = tests::aes_field(1, 0); }), Verdict::damaged, "bad-crc"},
        {"AE-2 with another CRC", with([](Odd& odd) { odd.crc = 5; }), Verdict::damaged, "bad-crc"},
        {"AE-2 with its CRC", with([](Odd& odd) { odd.crc = quill::crc32(0, text); }), Verdict::verified, ""},
        {"without data", with([](Odd& odd) { odd.packed = ""; }), Verdict::refused, "cut"},
        {"without a code", with([&](Odd& odd) { odd.packed = aes.substr(0, 20); }), Verdict::damaged,
         "bad-code wrong-size"},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.what);
        const Read read = read_member(c.odd);
        EXPECT_EQ(name_of(read.content.verdict), name_of(c.verdict));
        EXPECT_EQ(kinds(read), c.problems);
    }
}

TEST(MemberReader, VerifiesEmptyAesMembersByTheirCode) {
    const auto read = [](std::uint16_t method, const std::string& data) {
        return read_first(ArchiveBuilder().add("a", "", aes_member({"", method, 0, ""}, data, 2)).finish(), "sesame");
    };
    std::string aes = tests::aes_encrypted("", "sesame");
    for (const std::uint16_t method : {method_stored, method_deflated}) {
        EXPECT_EQ(read(method, aes).content.verdict, Verdict::verified);
    }
    aes.back() = static_cast<char>(aes.back() ^ 1);
    EXPECT_EQ(read(method_stored, aes).content.verdict, Verdict::damaged);
}

TEST(MemberReader, AMemberCutInItsEncryptedDataIsDamagedAndItsEndNotTakenForTheCode) {
    const Odd odd = aes_member({"", 0, 0, ""}, tests::aes_encrypted(text, "sesame"), 2);
    const std::string members = ArchiveBuilder().add("a", text, odd).members();
    constexpr std::size_t code_and_more = 10 + 4;
    const Read read = read_first(members.substr(0, members.size() - code_and_more), "sesame");
    EXPECT_EQ(name_of(read.content.verdict), "damaged");
    EXPECT_EQ(kinds(read), "cut wrong-size");
    EXPECT_EQ(read.bytes, text.substr(0, text.size() - 4));
}

TEST(MemberReader, AnUnknownSizeIsVerifiedByTheWholeDescriptor) {
    // Without a directory, and with a wrong packed size in the descriptor, only the stream shows where it ends.
    const struct {
        const char* what;
        std::size_t at;  // of the changed byte from the end
        const char* kind;
    } cases[] = {{"packed size", 8, "bad-descriptor"}, {"size", 4, "wrong-size"}, {"CRC", 12, "bad-crc"}};
    for (const Packed& packed : packed_texts()) {
        if (packed.method != 8 && packed.method != 12 && packed.method != 93 && packed.method != 95) continue;
        SCOPED_TRACE(packed.what);
        Odd odd = plain_member(packed, packed.bytes);
        odd.silent_local = true;
        const std::string members = ArchiveBuilder().add("a", text, odd).members();
        EXPECT_EQ(read_first(members).content.verdict, Verdict::verified);
        for (const auto& c : cases) {
            SCOPED_TRACE(c.what);
            std::string changed = members;
            changed[changed.size() - c.at] = static_cast<char>(changed[changed.size() - c.at] ^ 0x40);
            const Read read = read_first(changed);
            EXPECT_EQ(read.bytes, text);
            EXPECT_EQ(read.content.verdict, Verdict::damaged);
            EXPECT_EQ(kinds(read), c.kind);
        }
    }
}

TEST(MemberReader, WhatFollowsAStreamOfUnknownSizeMustAgreeWithIt) {
    const auto packed = packed_texts();
    const auto deflated = std::find_if(packed.begin(), packed.end(), [](const Packed& p) { return p.method == 8; });
    Odd odd = plain_member(*deflated, deflated->bytes);
    odd.silent_local = true;
    const std::string members = ArchiveBuilder().add("a", text, odd).members();
    constexpr std::size_t descriptor = 16;
    const std::string data = members.substr(0, members.size() - descriptor);
    const std::string behind = members.substr(data.size());
    const struct {
        const char* what;
        std::string rest;
        Verdict verdict;
    } cases[] = {
        {"all of it", behind, Verdict::verified},
        {"without its signature", behind.substr(4), Verdict::verified},
        {"nothing", "", Verdict::whole},
        {"a part of it", behind.substr(0, 11), Verdict::whole},
        {"a part without the signature", behind.substr(4, 5), Verdict::whole},
        {"another header", ArchiveBuilder().add("b", "x").members(), Verdict::whole},
        {"a part with another CRC", behind.substr(0, 4) + "wrong", Verdict::damaged},
        {"something else", std::string(100, 'x'), Verdict::damaged},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.what);
        EXPECT_EQ(name_of(read_first(data + c.rest).content.verdict), name_of(c.verdict));
    }
}

}  // namespace
}  // namespace quill::zip
