#include "shell/open_archive.h"

#include "text/ascii.h"

namespace quill::shell {
namespace {

constexpr auto password_question =
    "This ZIP or HTX file is password encoded. Type in the correct password for decoding this file now, then press "
    "enter or click OK. If you do not know the password click Cancel";

void ask_for_password(Context& context) {
    const std::string answer = context.platform.input({.text = password_question, .secret = true});
    if (answer.empty()) context.platform.end_process();
    context.session.ZipPassword = answer;
}

}  // namespace

void openarchive(Context& context) {
    Session& session = context.session;
    session.ZipEncrypted = false;
    session.ZipPassword.clear();
    if (session.CommandLine.empty() || session.CommandLine == "?") session.StartMode = 1;
    const std::string ending = text::to_lower(text::last(session.SelectedFile, 3));
    if (ending == "zip" || ending == "htx") {
        controls::run(context.routes.report_contents);
        if (session.ZipEncrypted) ask_for_password(context);
    }
    follow(context.platform, context.routes.open_archive, "open ZIP and HTX files");
}

void show_contents(Context& context) {
    follow(context.platform, context.routes.show_contents, "list what ZIP and HTX files hold");
}

}  // namespace quill::shell
