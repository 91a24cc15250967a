#include "codec/encoded.h"
#include "codec/scanned.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace quill::codec {
namespace {

using tests::lines_of;
using tests::noise;
using tests::scan_and_decode;
using tests::ScannedFile;
using tests::text_of;
using Lines = std::vector<std::string>;

const std::string original = noise(45 * 60 + 17);

/// One way to write the file: its lines of data, and those around them.
struct Coding {
    std::string begin;
    Lines lines;
    std::string end;
};

Coding uu_coding() {
    return {"begin 644 x\n", tests::uu_lines(original), "`\nend\n"};
}

Coding xx_coding() {
    Lines lines = tests::uu_lines(original);
    for (std::string& line : lines) {
        for (char& c : line) {
            c = uu::character_for(uu::Alphabet::xx, static_cast<unsigned>(uu::value_of(uu::Alphabet::uu, c)));
        }
    }
    return {"begin 644 x\n", lines, "+\nend\n"};
}

Coding base64_coding() {
    return {"begin-base64 644 x\n", lines_of(tests::base64(original)), "====\n"};
}

std::string header_of(std::size_t number, std::size_t fields, bool numbered) {
    const std::string n = std::to_string(number);
    const Lines all = {"From: a@b.example",
                       "Subject: x" + (numbered ? " (" + n + "/3)" : ""),
                       "Newsgroups: alt.x",
                       "Date: Mon, 23 Nov 2026 10:00:00 GMT",
                       "Message-ID: <" + n + "@b.example>",
                       "Lines: 20",
                       "X-Trace: news.example",
                       "Organization: none"};
    return text_of({all.begin(), all.begin() + static_cast<std::ptrdiff_t>(fields)}) + "\n";
}

/// Returns three articles with a third of the file each.
Lines articles_of(const Coding& coding, std::size_t fields, bool numbered, const std::string& tail) {
    const auto third = static_cast<std::ptrdiff_t>(coding.lines.size() / 3);
    const auto first = coding.lines.begin();
    const std::string head = header_of(1, fields, numbered) + coding.begin;
    return {head + text_of({first, first + third}) + tail,
            header_of(2, fields, numbered) + text_of({first + third, first + 2 * third}) + tail,
            header_of(3, fields, numbered) + text_of({first + 2 * third, coding.lines.end()}) + coding.end + tail};
}

/// Returns the files in `text`, without the texts of its messages.
std::vector<ScannedFile> files_in(const std::string& text) {
    std::vector<ScannedFile> files = scan_and_decode(text);
    std::erase_if(files, [](const ScannedFile& file) { return file.attachment.message_text; });
    return files;
}

TEST(Articles, ThatAreInOneTextAreJoinedByTheirSubjects) {
    for (const Coding& coding : {uu_coding(), xx_coding(), base64_coding()}) {
        for (const std::size_t fields : {2U, 4U, 8U}) {
            for (const std::string tail : {"", "\n", "-- \nA B\na@b.example\n"}) {
                const Lines parts = articles_of(coding, fields, true, tail);
                for (const std::string& text : {parts[0] + parts[1] + parts[2], parts[1] + parts[0] + parts[2]}) {
                    const std::vector<ScannedFile> files = files_in(text);
                    ASSERT_EQ(files.size(), 1U) << coding.begin << fields << tail;
                    EXPECT_EQ(files[0].bytes, original) << coding.begin << fields << tail;
                    EXPECT_EQ(name_of(files[0].outcome.verdict), "whole") << coding.begin << fields << tail;
                }
            }
        }
    }
}

TEST(Articles, OfWhichOneMayBeMissingAreNotWhole) {
    for (const Coding& coding : {uu_coding(), xx_coding(), base64_coding()}) {
        const Lines parts = articles_of(coding, 4, true, "\n");
        const ScannedFile gap = files_in(parts[0] + parts[2]).at(0);
        EXPECT_EQ(name_of(gap.outcome.verdict), "incomplete") << coding.begin;
        EXPECT_TRUE(gap.has_problem("missing-part")) << coding.begin;
        const Lines unnumbered = articles_of(coding, 2, false, "\n");
        const ScannedFile guess = files_in(unnumbered[0] + unnumbered[1] + unnumbered[2]).at(0);
        EXPECT_EQ(guess.bytes, original) << coding.begin;
        EXPECT_EQ(name_of(guess.outcome.verdict), "damaged") << coding.begin;
        EXPECT_TRUE(guess.has_problem("unnumbered-parts")) << coding.begin;
    }
}

TEST(Articles, DoNotEndAtWhatOnlyLooksLikeASignatureOrAField) {
    for (const Coding& coding : {uu_coding(), base64_coding()}) {
        for (const std::string line : {"-- \n", "-- \nA B\n", "Subject: x\n", "From: a\nTo: b\n"}) {
            Lines parts = articles_of(coding, 4, true, "");
            const std::string& last = coding.lines[coding.lines.size() / 3 - 3];
            parts[0].insert(parts[0].find(last), line);
            for (const ScannedFile& file : files_in(parts[0] + parts[1] + parts[2])) {
                EXPECT_TRUE(file.outcome.verdict >= Verdict::damaged || file.bytes == original) << coding.begin << line;
            }
        }
    }
}

}  // namespace
}  // namespace quill::codec
