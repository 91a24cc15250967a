#include "encoder/chooser_routes.h"

#include "encoder/file_chooser.h"
#include "files/path.h"

namespace quill::encoder {
namespace {

/// Where the choosers begin.
std::string start_directory(const shell::Context& context) {
    return files::join(context.session.AppParentDir, "zip-htx directory");
}

/// The mode whose caption a caller gave.
ChooserMode encoding_mode(const std::string& caption) {
    ChooserMode mode = ChooserMode::encode_uue;
    while (mode != ChooserMode::encode_yenc && caption_of(mode) != caption)
        mode = static_cast<ChooserMode>(static_cast<int>(mode) + 1);
    return mode;
}

}  // namespace

void scan_selected_file(shell::Context& context) {
    const bool yes = context.platform.ask(
        {.text = " You have not configured this program to work with your anti-virus program to scan "
                 "zip files, would you like to do so now?",
         .title = "No Anti-virus has been setup",
         .no_is_default = true,
         .question_mark = true});
    if (yes) show_chooser(context, ChooserMode::anti_virus, "/usr/bin");
}

void provide_chooser(shell::Context& context) {
    shell::Routes& routes = context.routes;
    routes.open_chooser = [&context] { show_chooser(context, ChooserMode::open, start_directory(context)); };
    routes.open_encoder = [&context](const std::string& caption) {
        show_chooser(context, encoding_mode(caption), start_directory(context));
    };
    routes.scan_file = [&context] { scan_selected_file(context); };
}

}  // namespace quill::encoder
