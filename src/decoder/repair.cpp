#include "decoder/repair.h"

#include "decoder/mime_wrap.h"
#include "files/directory.h"
#include "files/mapped_file.h"
#include "files/names.h"
#include "files/path.h"
#include "text/ascii.h"
#include "viewer/file_run.h"

#include <string>
#include <string_view>

namespace quill::decoder {
namespace {

constexpr std::string_view repaired_name = "new.mim";
constexpr std::string_view name_of_the_unknown = "TEMP";

struct Repair {
    std::string_view purpose;  ///< the purpose that the first message states
    void (*rewriting)(const text::Source& text, const Sink& out);
    std::string_view advice;  ///< the text of the last message; may be empty
};

void put_header(const text::Source& text, const Sink& out) {
    write_base64_header(name_of_the_unknown, out);
    copy_from_first_long_line(text, out);
}

constexpr Repair add_header = {
    " and change it to add a standard MIM header info at the top of the file. It will save the file as ", put_header,
    "    Since the file previous did not decode without the header info and I cannot possibly anticipate "
    "every type of file this file could possibly be, the header info was set to call the file inside of "
    "NEW.MIM, the file (MIM) Quillbright should create after running it again, this time to decode NEW.MIM, "
    "that new file created AFTER you decode NEW.MIM should now be created to be called TEMP. If you know "
    "what type of file it is supposed to be you can rename it so your computer will know what to do with it. "
    "If it is a document rename it TEMP.DOC or ANYTHING.DOC. If it is supposed to be an .xls file, rename it "
    "to end with .xls, and so on. The program does check to see if it is a picture file though, so if it is, "
    "the program should recognize it after decoding it and rename it properly for you automatically upon "
    "opening it."};

constexpr Repair break_lines = {
    " and change the <br> symbols into normal line returns, and will save the file as ", break_lines_at_tags, {}};

/// Returns the directory of `path` with a slash at its end, as the messages show it.
std::string directory_with_slash(const std::string& path) {
    const std::string dir = files::dir_of(path);
    return dir.empty() || files::is_root(dir) ? dir : dir + "/";
}

/// Returns the name of the repaired copy as the messages show it.
std::string shown_name(const std::string& path) {
    const std::string name = files::name_of(path);
    return name == repaired_name ? "NEW.MIM" : name;
}

void perform(shell::Context& context, const Repair& repair) {
    platform::Platform& platform = context.platform;
    const std::string input = context.session.EncodedPath;
    const std::string dir = directory_with_slash(input);
    const std::string named = dir + std::string(repaired_name);
    const std::string output = dir + files::unique_name(dir.empty() ? "." : dir, std::string(repaired_name));
    platform.message("    This program will now attempt to reformat " + input + std::string(repair.purpose) + output +
                     ". You can try decoding this file after the program finishes. This may take a few minutes or more "
                     "if the file is very large. Usually it only takes less than a minute if the file is less than one "
                     "megabyte.");
    if (text::equal_ignoring_case(input, named) || files::same_file(input, named)) {
        platform.message(
            "File name is already new.mim. File must be renamed in order to proceed. If you have done this action once "
            "before on this file, doing so again will not help.");
        platform.end_session(files::name_of(input) + " was not changed. Give it another name to repair it again.");
    }
    if (const Result<files::MappedFile> text = files::MappedFile::open(input); !text) {
        platform.warn("    The file " + input + " could not be read: " + text.error().text +
                      ". Nothing has been changed.");
        return;
    }
    const Result<std::string> written = [&] {
        viewer::FileRun run(context, "Reformatting " + files::name_of(input));
        return write_rewritten(input, output, repair.rewriting,
                               [&](std::uint64_t done, std::uint64_t size) { return run.goes_on(done, size); });
    }();
    if (!written && written.error().code == ErrorCode::cancelled) return;
    if (!written) {
        platform.warn("    The file " + output + " could not be written: " + written.error().text +
                      ". Nothing has been changed.");
        return;
    }
    platform.message("    This program has now finished its reformatting of the file. It would be called " +
                     shown_name(*written) +
                     " and would be in the same directory as the file you were trying to decode, that directory is " +
                     dir + ".  You can now rerun the program and try decoding this file after the program ends.");
    if (!repair.advice.empty()) platform.message(std::string(repair.advice));
    platform.end_session(files::name_of(*written) + " was made and can be decoded now.", *written);
}

}  // namespace

void otherfom(shell::Context& context) {
    perform(context, add_header);
}

void refom(shell::Context& context) {
    perform(context, break_lines);
}

}  // namespace quill::decoder
