#include "encoder/chooser_routes.h"

#include "encoder/file_chooser.h"

namespace quill::encoder {
namespace {

/// Returns the mode of the caption that a caller gave.
ChooserMode encoding_mode(const std::string& caption) {
    ChooserMode mode = ChooserMode::encode_uue;
    while (mode != ChooserMode::encode_yenc && caption_of(mode) != caption)
        mode = static_cast<ChooserMode>(static_cast<int>(mode) + 1);
    return mode;
}

}  // namespace

void provide_chooser(shell::Context& context) {
    shell::Routes& routes = context.routes;
    routes.open_chooser = [&context](const std::string& directory) {
        show_chooser(context, ChooserMode::open, directory);
    };
    routes.open_encoder = [&context](const std::string& caption) { show_chooser(context, encoding_mode(caption), ""); };
    routes.choose_scanner = [&context](const std::string& path) {
        show_chooser(context, ChooserMode::anti_virus, "/usr/bin").scan_target = path;
    };
}

}  // namespace quill::encoder
