#pragma once

#include <array>
#include <string_view>

/// The texts of the repair guide.
namespace quill::decoder::texts {

inline constexpr std::string_view having_trouble =
    "Quillbright Pro is having trouble decoding this file. It may not be an encoded file, it may have lines at "
    "the top of the message which are preventing decoding, or it may be a quoted printable encoded file. If it "
    "is a quoted printable file it still can be decoded. If it has lines which are interfering with the "
    "decoding, this too can be easily fixed. Only if it is not an encoded file to begin with or a file which has "
    "been decoded or is text based cannot it not be decoded.";

/// Precedes the findings once the side program runs.
inline constexpr std::string_view unwrapper_started =
    "The quoted-printable program has been started on this file. What it makes appears beside the file: a "
    "decoded text, or the parts of the message that were quoted-printable. If it makes nothing, the file holds "
    "no quoted-printable text. If what it makes is an encoded file again, choose that file in the main window to "
    "decode it.\n"
    "\n";

/// Precedes the findings if the side program could not be started.
inline constexpr std::string_view unwrapper_missing =
    "The quoted-printable program could not be started. It is called qpunwrap, and is looked for beside this program "
    "and where other programs are installed.\n"
    "\n";

inline constexpr std::string_view tutorial =
    "An encoded file is a file of any kind (a picture, a document, a program) written with ordinary letters, "
    "digits and punctuation, so that it can travel inside a mail or a news post. Open such a message in a text "
    "editor and you will see two things:\n"
    "\n"
    "1. A few readable lines at the top, the header. One of them begins with \"Content-Type:\" and tells what kind "
    "of file it is; others give the file's name and say how it is encoded, for example "
    "\"Content-Transfer-Encoding: base64\". Other kinds begin with \"begin 644\" and a name, with \"(This file must "
    "be converted with BinHex 4.0)\", or with \"=ybegin\".\n"
    "\n"
    "2. Below them many rows of letters and digits, all of the same length, that make no words. These rows are "
    "the file. (In yEnc posts they are full of odd symbols instead, and that is right.)\n"
    "\n"
    "If you see such rows, the file can be decoded. What gets in the way is mostly text above the header: an "
    "answer that someone wrote, quoted lines, a line of dashes. Delete everything above the first line that "
    "begins with \"Content-Type:\", save the file as plain text, and decode it again.\n"
    "\n"
    "If you see boxes and odd symbols from the very first line, the file is not encoded. It was decoded already, "
    "and perhaps it only needs the right name.\n"
    "\n"
    "Try it here, in the sample message below. Delete everything above the line that begins with "
    "\"Content-Type:\". Then choose Save in the File menu at the top of this window.";

/// The beginning of the sample once the lines above it are deleted.
inline constexpr std::string_view sample_begins = "Content-Type: image";

inline constexpr std::string_view sample_message =
    "> Did you get any good pictures on your trip?\n"
    "> I would love to see the one with the lighthouse.\n"
    "\n"
    "Here it is. It was windy that day, as you can see.\n"
    "\n"
    "------=_NextPart_000_0021_01BF5A3C.6E8A1F20\n"
    "Content-Type: image/jpeg;\n"
    "\tname=\"lighthouse.jpg\"\n"
    "Content-Transfer-Encoding: base64\n"
    "Content-Disposition: attachment;\n"
    "\tfilename=\"lighthouse.jpg\"\n"
    "\n"
    "/9j/4AAQSkZJRgABAQAAAQABAAD/2wBDABALDA4MChAODQ4SERATGCgaGBYWGDEjJR0oOjM9PDkz\n"
    "ODdASFxOQERXRTc4UG1RV19iZ2hnPk1xeXBkeFxlZ2P/2wBDARALDA4MChAODQ4SERATGCgaGBYW\n"
    "GDEjJR0oOjM9PDkzODdASFxOQERXRTc4UG1RV19iZ2hnPk1xeXBkeFxlZ2MAAAAAAAAAAAAAAAAA\n"
    "(and so it goes on, row after row, down to the end of the message)\n";

inline constexpr std::string_view looked_binary =
    "When I looked at the file in a text editor I saw boxes and/or weird characters and lines of all different "
    "lengths and no readable characters at the top, or only a few letters if any at all";

inline constexpr std::string_view looked_even =
    "When I looked at the file in a text editor I DID NOT see boxes and weird characters but instead saw even "
    "rows of normal looking letters and numbers without anything at the top to say what the file should be named";

inline constexpr std::string_view looked_like_one_line =
    "When I looked at the file in a text editor I DID NOT see boxes and weird characters but instead saw toward "
    "the bottom one long continous line without line breaks (one continuous line) with <BR> appearing "
    "approximately every 60 to 70 characters";

inline constexpr std::array<std::string_view, 3> not_encoded = {
    "   A file that looks like this in a text editor is most likely not encoded. Encoded files are made of "
    "ordinary letters, digits and punctuation only, so there is nothing in this one to decode.",
    "   It may be a file that was decoded already and came out with the wrong name. If you know what it is, give "
    "it the right ending: .jpg for most pictures, .pdf or .doc for documents, .zip for packed files. Then open "
    "it by double clicking on it.",
    "   If its name is right and nothing happens when you open it, the file is probably of a type that needs "
    "another program. Ask whoever sent it which program it was made with."};

inline constexpr std::string_view question_title = "Was this what you saw?";

inline constexpr std::string_view about_even_rows =
    "   On some occassions people have reported getting MIME encoded files without the header info at the top to "
    "say what type of file it is or what it should be saved as. Sometimes these files can be decoded, sometimes "
    "they need to have such information added at the top of the file to decode properly.";

inline constexpr std::string_view saw_even_rows =
    "    Answer this question based on the previous Window's message. If you did not read it or are unsure, "
    "click NO now. Did you look at the file you are trying to decode in a text editor, and did you see that it "
    "was an encoded file with regular letters and numbers and no boxes and no weird symbols, and it had many "
    "lines all the same lenght with no words above the lines which were all the same lenght (if there were words "
    "above the lines all the same length click NO, and then CANCEL, and then read the HOW TO TELL IF IT CAN BE "
    "DECODED OR NOT), and would you like to now have it reformatted into a regular type of encoded file?";

inline constexpr std::string_view about_long_line =
    "   In some rare instances I have seen HTML encoded files without line breaks. They use <BR>, the HTML term "
    "for start a new line. Usually these are added in addition to, rather than instead of, the traditional line "
    "return symbol which tells programs to start a new line. If after looking at it in a text editor if you saw "
    "all regular letters and numbers, no boxes or weird symbols, and a seemingly endless long line with letters "
    "and numbers with <BR> every 60 or 70 characters or so, this program can reformat this file to look and "
    "decode normally. If this is not what you saw do not choose this option.";

inline constexpr std::string_view saw_long_line =
    "    Answer this question based on the previous Window's message. If you did not read it or are unsure, "
    "click NO now. Did you look at the file you are trying to decode in a text editor, did you see that it was "
    "an encoded file with regular letters and numbers and no boxes and no weird symbols, and had a really really "
    "long continuous line with <BR> every 60 or 70 characters or so, and would you like to now have it "
    "reformatted into a regular type of encoded file?";

inline constexpr std::array<std::string_view, 1> write_to_us = {
    "   Please write to support@quillbright.example. Say what you saw in the text editor, copy the first twenty "
    "lines of the file into your message, and add what this window says the program found. Do not send the file "
    "itself before you are asked to."};

inline constexpr std::string_view open_is_wrong =
    "   No, clicking this would open a new file, you want to save changes in an existing file.";

inline constexpr std::string_view print_is_wrong =
    "   No, clicking this would print the file, this has nothing to do with saving changes to an existing file.";

inline constexpr std::string_view save_as_is_harder =
    "   Clicking this could work, but it would be much easier to click Save, try that now.";

inline constexpr std::string_view end_is_harder =
    "   You could click this and the text editor should prompt you to save any changes, to which you should say "
    "OK (you would need to have changed it somehow to get that message though). Try clicking Save instead.";

inline constexpr std::string_view save_is_right =
    "   Very good, this is what you are supposed to click. Do it just like that in the text editor. If it says "
    "saving it as a text file will lose all formatting, do you want to do that, say yes, that is the way you "
    "want to save it, as a simple text based file. Simply retry decoding the file again after saving it and it "
    "should decode fine.";

inline constexpr std::string_view lines_left =
    "You did not delete all the lines just above the first line that says Content-Type:, try doing that now for "
    "practice.";

}  // namespace quill::decoder::texts
