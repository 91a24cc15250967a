#include "decoder/virus_guard.h"

#include "files/path.h"
#include "shell/main_window.h"

namespace quill::decoder {

void scanbutt(shell::Context& context) {
    context.windows.load<shell::swit>().Option1.chosen = true;
    offer_scan(context, files::join(context.session.SelectedDir, context.session.SelectedFile));
}

void offer_scan(shell::Context& context, const std::string& path) {
    const bool yes = context.platform.ask({.text = " You have not configured this program to work with your anti-virus "
                                                   "program to scan zip files, would you like to do so now?",
                                           .title = "No Anti-virus has been setup",
                                           .no_is_default = true,
                                           .question_mark = true});
    if (!yes) return;
    if (context.routes.choose_scanner) {
        context.routes.choose_scanner(path);
    } else {
        shell::say_not_yet(context.platform, "check files for viruses");
    }
}

}  // namespace quill::decoder
