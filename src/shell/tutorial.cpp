#include "shell/tutorial.h"

#include <array>
#include <string>

namespace quill::shell {
namespace {

constexpr std::array<std::string_view, 5> introduction = {
    "Quillbright Pro gets files out of saved e-mails and newsgroup posts, puts files into such a form, and works with "
    "ZIP files, books of pages and sets of pictures.\n\n"
    "Mail and news can only carry text. A picture or a document that travels with them is therefore written out as "
    "letters and digits: it is encoded. If your mail program does not show the attachment, or all you have is the "
    "saved message, this program turns the text back into the file.",

    "The kinds of encoding that it reads:\n\n"
    "MIME (Base64 and quoted-printable) - what e-mail has used since the 1990s. Saved mails end in .eml, .mim, .mbox "
    "or .txt.\n"
    "uuencode (UUE) and XXencode (XXE) - older posts and mails. The text begins with a line like \"begin 644 "
    "photo.jpg\" and ends with \"end\".\n"
    "yEnc - newsgroup posts since 2001. The text begins with \"=ybegin\".\n"
    "BinHex (HQX) - files from older Macintosh computers.\n\n"
    "You need not know which one you have: the program finds out.",

    "To decode a file, choose \"Select/Open/View a file\" and pick the saved message, or drop it on this window. Then "
    "choose \"Decode/open\". What was found in it is written beside the message and listed; a double click opens an "
    "entry.\n\n"
    "A long post is often split over several messages. Save all of its parts first and put them together, then "
    "decode the whole.",

    "Beside each decoded file stands how sure the program is of it. \"Verified\": a checksum or a size in the message "
    "agrees. \"Whole\": nothing is missing. \"Damaged\" or \"incomplete\": something was lost on the way; what could "
    "be saved has been saved.\n\n"
    "Be careful with files from strangers. The program never runs what it has decoded, but the program that opens "
    "the file may. \"Virus Scan\" has the file checked first.",

    "To make a file, choose \"Create compressed or encoded file\": a ZIP file (many files in one, made smaller), an "
    "HTX book (web pages and pictures to leaf through), a PICS file (many pictures in one), or an encoded file that "
    "can be sent as text.\n\n"
    "\"Help for Quillbright Pro 2012\" in the menu \"About..\" has the whole story, with pictures."};

constexpr std::array<std::string_view, 4> kinds_of_files = {
    "A ZIP file holds many files in one and makes them smaller. Every computer of today can open it. Choose it to "
    "send several files at once or to put files away. It can have a password.",

    "An HTX file is a book: web pages with their pictures in one ZIP file, shown page by page by this program. "
    "Choose it for an album with captions, or for pages that belong together. Renamed to .zip, it opens as a ZIP "
    "file everywhere.",

    "A PICS file holds many pictures in one file without changing them. Choose it to keep or send a set of pictures "
    "that is to be looked at with this program's viewer. It is not made smaller, as pictures hardly get smaller "
    "anyway.",

    "An encoded file is another file written out as plain text, so that it can travel where only text does.\n\n"
    "MIME - for e-mail; the one to take when in doubt.\n"
    "UUE - for old programs that know nothing newer.\n"
    "XXE - the same with letters that survive the oldest mail gateways.\n"
    "yEnc - for newsgroups: hardly longer than the file itself, with a checksum.\n\n"
    "To get the file back, open the text with this program."};

constexpr std::array<std::string_view, 3> books_and_pics = {
    "An HTX of misc. files is made from web pages that you have already. You pick the pages (.htm or .html); the "
    "pictures and pages that they lead to can be found for you and go in as well. Together they become one file that "
    "opens as a book.",

    "A PICS file is made from pictures only. They are put into one file just as they are, and the viewer shows them "
    "as a row of small pictures. It is the quickest way to keep many pictures together.",

    "An HTX file from pictures only is a picture book. You give each picture a title and, if you like, a caption; the "
    "program writes the pages, with an index to leaf through. Take it where words matter, and a PICS file where only "
    "the pictures do."};

}  // namespace

std::span<const std::string_view> introduction_texts() {
    return introduction;
}

std::span<const std::string_view> kinds_of_files_texts() {
    return kinds_of_files;
}

std::span<const std::string_view> book_and_pics_texts() {
    return books_and_pics;
}

void say_all(platform::Platform& platform, std::span<const std::string_view> texts) {
    for (const std::string_view text : texts) platform.message(std::string(text));
}

}  // namespace quill::shell
