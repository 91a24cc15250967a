#include "desktop/text_editor.h"

#include "support/temporary_directory.h"
#include "text/utf8.h"

#include <QPlainTextEdit>
#include <gtest/gtest.h>

#include <random>

namespace quill::tests {
namespace {

using namespace std::string_view_literals;

std::string again(std::string_view bytes) {
    const desktop::FileText file = desktop::read_text(bytes);
    return desktop::text_bytes(file.text, file.form).value();
}

/// Returns every character of Unicode as UTF-8, in lines.
std::string all_characters() {
    std::string all;
    for (char32_t character = 0; character <= 0x10FFFF; ++character) {
        if (character < 0xD800 || character > 0xDFFF) text::append_utf8(all, character);
        if (character % 64 == 0) all += '\n';
    }
    return all;
}

/// Pieces with a meaning in a text, or that break such a piece.
constexpr std::string_view pieces[] = {"\0"sv,
                                       "\t",
                                       "\n",
                                       "\r",
                                       "\r\n",
                                       " ",
                                       "a",
                                       "\x7F",
                                       "\x80",
                                       "\x85",
                                       "\x9D",
                                       "\xA0",
                                       "\xAD",
                                       "\xC2",
                                       "\xC3\xA9",
                                       "\xC2\x85",
                                       "\xC2\xA0",
                                       "\xC2\xAD",
                                       "\xE2",
                                       "\xE2\x80",
                                       "\xE2\x80\xA8",
                                       "\xE2\x80\xA9",
                                       "\xE2\x80\xAE",
                                       "\xEF\xB7\x90",
                                       "\xEF\xB7\x91",
                                       "\xEF\xBB\xBF",
                                       "\xEF\xBF\xBC",
                                       "\xEF\xBF\xBD",
                                       "\xEF\xBF\xBE",
                                       "\xED\xB0\x8A",
                                       "\xED\xA0\x80",
                                       "\xEE\x80\x80",
                                       "\xF0\x9F\x98\x80",
                                       "\xF4\x90",
                                       "\xFE",
                                       "\xFF"};

class Mixtures {
  public:
    /// Returns bytes of all values, of the pieces above, or of both.
    std::string next(std::size_t length) {
        const unsigned kind = pick(3);
        std::string bytes;
        while (bytes.size() < length) {
            if (kind == 0 || (kind == 2 && pick(2) == 0)) {
                bytes += static_cast<char>(pick(256));
            } else {
                bytes += pieces[pick(std::size(pieces))];
            }
        }
        return bytes;
    }

  private:
    unsigned pick(std::size_t count) { return static_cast<unsigned>(random_() % count); }

    std::minstd_rand random_{20121};
};

TEST(TextForm, AnyBytesComeBackAsTheyWere) {
    for (unsigned pair = 0; pair < 0x10000; ++pair) {
        const char bytes[] = {static_cast<char>(pair >> 8U), static_cast<char>(pair)};
        ASSERT_EQ(again({bytes, 1}), std::string_view(bytes, 1)) << pair;
        ASSERT_EQ(again({bytes, 2}), std::string_view(bytes, 2)) << pair;
    }
    for (const std::string_view a : pieces) {
        for (const std::string_view b : pieces) {
            for (const std::string_view c : pieces) {
                const std::string bytes = std::string(a).append(b).append(c);
                ASSERT_EQ(again(bytes), bytes);
            }
        }
    }
    Mixtures mixtures;
    for (std::size_t length = 0; length < 1000; ++length) {
        const std::string bytes = mixtures.next(length);
        ASSERT_EQ(again(bytes), bytes);
    }
    EXPECT_EQ(again(all_characters()), all_characters());
}

TEST(TextForm, ShowsTextInItsEncodingAndHoldsWhatIsNone) {
    struct Case {
        std::string_view bytes;
        QString text;
        std::size_t held, odd_ends;
    };
    const Case cases[] = {
        {"gr\xC3\xBC\xC3\x9F\n", QStringLiteral("grüß\n"), 0, 0},
        {"\xEF\xBB\xBFgr\xC3\xBC\xC3\x9F", QStringLiteral("grüß"), 0, 0},
        {"gr\xFC\xDF \x80", QStringLiteral("grüß €"), 0, 0},
        {"gr\xC3\xBC\xC3\x9F \xFC"sv, QStringLiteral("grüß ") + QChar(0xDCFC), 1, 0},
        {"no\xC2\xA0"
         "break\xA0"sv,
         QStringLiteral("no\u00A0break") + QChar(0xDCA0), 1, 0},
        {"a\0b\x1B"sv, QStringLiteral("a") + QChar(0xDC00) + u'b' + QChar(0xDC1B), 2, 0},
        {"1\r\n2\n3\r\n", QStringLiteral("1\n2") + QChar(0xDC0A) + QStringLiteral("\n3\n"), 0, 1},
        {"1\n2\r\n3\n4\r",
         QStringLiteral("1\n2") + QChar(0xDC0D) + QChar(0xDC0A) + QStringLiteral("\n3\n4") + QChar(0xDC0D) + u'\n', 0,
         2},
    };
    for (const Case& each : cases) {
        const desktop::FileText file = desktop::read_text(each.bytes);
        EXPECT_EQ(file.text, each.text);
        EXPECT_EQ(file.held, each.held) << each.bytes;
        EXPECT_EQ(file.odd_ends, each.odd_ends) << each.bytes;
    }
}

/// A file in the editor.
class TextEditor : public ::testing::Test {
  protected:
    void open(std::string_view bytes) {
        here.write("letter.mim", bytes);
        ASSERT_TRUE(editor.open(here.path("letter.mim")).ok());
        ASSERT_FALSE(editor.text().isReadOnly());
    }
    std::string saved() {
        EXPECT_TRUE(editor.save().ok());
        return here.read("letter.mim");
    }
    void replace(const QString& what, const QString& by) {
        ASSERT_TRUE(editor.find(what));
        editor.text().insertPlainText(by);
    }

    const TemporaryDirectory here;
    desktop::TextEditor editor;
};

TEST_F(TextEditor, AnEditLeavesAllOtherBytesAsTheyWere) {
    Mixtures mixtures;
    for (int round = 0; round < 60; ++round) {
        const std::string before = mixtures.next(300), after = mixtures.next(300);
        open(before + "NEEDLE" + after);
        replace(QStringLiteral("NEEDLE"), QStringLiteral("thread"));
        ASSERT_EQ(saved(), before + "thread" + after);
    }
    open(all_characters() + "NEEDLE");
    replace(QStringLiteral("NEEDLE"), QStringLiteral("é"));
    EXPECT_TRUE(saved() == all_characters() + "\xC3\xA9");
}

TEST_F(TextEditor, CutAndPasteKeepsEveryByte) {
    Mixtures mixtures;
    for (int round = 0; round < 20; ++round) {
        const std::string bytes = mixtures.next(200) + "\nend";
        open(bytes);
        editor.text().selectAll();
        editor.text().cut();
        EXPECT_TRUE(editor.text().document()->isEmpty());
        editor.text().paste();
        ASSERT_EQ(saved(), bytes);
        editor.text().undo();
        editor.text().undo();
        ASSERT_EQ(saved(), bytes);
    }
}

TEST_F(TextEditor, NewLinesEndAsTheOthersDo) {
    struct Case {
        const char *bytes, *expected;
    };
    for (const Case& each :
         {Case{"1\r\n2\r\n", "1\r\n2\r\n3\r\n\r\n"}, Case{"1\r2\r", "1\r2\r3\r\r"}, Case{"1\n2\n", "1\n2\n3\n\n"},
          Case{"", "3\n\n"}, Case{"1\r\n2\r\n3\n", "1\r\n2\r\n3\n3\r\n\r\n"}}) {
        open(each.bytes);
        editor.text().moveCursor(QTextCursor::End);
        editor.text().insertPlainText(QStringLiteral("3\n\u2028"));
        EXPECT_EQ(saved(), each.expected);
    }
}

TEST_F(TextEditor, CharacterThatTheFileCannotHoldIsNotSaved) {
    open("\xE4\n");
    editor.text().insertPlainText(QStringLiteral("€"));
    EXPECT_EQ(saved(), "\x80\xE4\n");
    for (const QString& other : {QStringLiteral("Ж"), QStringLiteral("\U0001F600"), QString(QChar(0xD83D))}) {
        editor.text().insertPlainText(other);
        EXPECT_FALSE(editor.save().ok());
        EXPECT_EQ(here.read("letter.mim"), "\x80\xE4\n");
        editor.text().undo();
    }
    EXPECT_FALSE(editor.open(here.path("nowhere")).ok());
}

TEST_F(TextEditor, FindsRoundTheEnd) {
    open("needle\nhay\nneedle\n");
    EXPECT_TRUE(editor.find(QStringLiteral("needle")));
    EXPECT_TRUE(editor.find(QStringLiteral("needle")));
    EXPECT_EQ(editor.text().textCursor().blockNumber(), 2);
    EXPECT_TRUE(editor.find(QStringLiteral("needle")));
    EXPECT_EQ(editor.text().textCursor().blockNumber(), 0);
    EXPECT_FALSE(editor.find(QStringLiteral("thread")));
}

}  // namespace
}  // namespace quill::tests
