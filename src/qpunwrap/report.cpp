#include "qpunwrap/report.h"

#include "files/path.h"
#include "text/count.h"
#include "text/printable.h"
#include "text/utf8.h"

namespace quill::qpunwrap {
namespace {

std::string printable(std::string_view bytes) {
    return text::printable(text::to_utf8(bytes));
}

std::string line_about(const codec::Recovered& made) {
    std::string line = "  " + printable(made.name) + ", " + text::counted(made.outcome.size, "byte");
    for (const codec::Problem& problem : made.outcome.problems) line += "\n    " + printable(text_of(problem));
    return line + "\n";
}

}  // namespace

Report report(const std::string& path, const Result<Unwrapped>& result) {
    const std::string name = printable(files::name_of(path));
    if (!result) return {ExitStatus::failed, name + " could not be read: " + printable(result.error().text) + "\n"};
    if (result->made.empty() && result->failed.empty()) {
        return {ExitStatus::nothing, name + " holds no quoted-printable text. Nothing was made.\n"};
    }
    Report out;
    if (!result->made.empty()) {
        out.text = result->message ? "The quoted-printable parts of the message " + name + ":\n"
                                   : "The quoted-printable text of " + name + ":\n";
        for (const codec::Recovered& made : result->made) out.text += line_about(made);
        const std::string dir = files::dir_of(path);
        out.text += "Written to " + (dir.empty() ? "the current directory" : printable(dir)) + ".\n";
    }
    for (const std::string& failed : result->failed) {
        out.status = ExitStatus::failed;
        out.text += "Could not write " + printable(failed) + "\n";
    }
    return out;
}

}  // namespace quill::qpunwrap
