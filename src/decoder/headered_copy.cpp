#include "decoder/headered_copy.h"

#include "decoder/mime_wrap.h"
#include "files/directory.h"
#include "files/names.h"
#include "files/path.h"
#include "shell/long_run.h"
#include "shell/main_window.h"
#include "text/ascii.h"

namespace quill::decoder {
namespace {

/// Returns the path of an existing file that has one of the names that the copy may get, and its exact bytes; empty if
/// there is no such file.
std::string same_copy(const std::string& input, const std::string& copy, const Rewriting& rewriting) {
    const std::string dir = files::dir_of(copy);
    const std::string name = files::name_of(copy);
    std::string path = copy;
    for (unsigned n = 1; files::exists(path); path = files::join(dir, files::numbered_name(name, ++n))) {
        if (holds_rewriting(path, input, rewriting)) return path;
    }
    return {};
}

}  // namespace

void ask_for_headered_copy(shell::Context& context) {
    const bool yes = context.platform.ask(
        {.text = "    This file appears to be an encoded file but is named as the file it is supposed to be. What this "
                 "program will do is create a new file of it called 1" +
                 files::name_of(context.session.EncodedPath) +
                 " and try to decode that file instead. This way the original file will not be changed. Would you "
                 "like to proceed?",
         .title = {}});
    if (yes) return;
    context.platform.end_session("Nothing was made of " + files::name_of(context.session.EncodedPath) + ".");
}

Result<std::string> write_headered_copy(shell::Context& context, const std::string& name, std::size_t line_length) {
    shell::Session& session = context.session;
    const std::string input = session.EncodedPath;
    const std::string copy = files::join(files::dir_of(input), "1" + files::name_of(input));
    const Rewriting with_header = [&](const text::Source& text, const Sink& out) {
        write_base64_header(name, out);
        const auto rows = line_length == base64_line_length ? copy_from_first_long_line : rewrap;
        rows(text, out);
    };
    std::string path = same_copy(input, copy, with_header);
    if (path.empty()) {
        shell::LongRun run(context.platform, run_panel(context.windows.load<shell::swit>()),
                           "Writing " + files::name_of(copy));
        Result<std::string> written = write_rewritten(
            input, copy, with_header, [&](std::uint64_t done, std::uint64_t size) { return run.goes_on(done, size); });
        if (!written) return written;
        path = *written;
    }
    session.EncodedPath = path;
    session.SkipName = text::to_lower(files::name_of(path));
    return files::name_of(path);
}

}  // namespace quill::decoder
