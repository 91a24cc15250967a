#include "zip/media_label.h"

#include "files/path.h"
#include "text/ascii.h"
#include "zip/archive_window.h"

namespace quill::zip {

std::string MediaCommand(arcview& w, const std::string& command) {
    const std::string reply = w.context.platform.media().command(command);
    return reply.substr(0, reply.find('\0'));
}

void toggle_media(arcview& w) {
    w.MediaReply = MediaCommand(w, "status " + w.MediaAlias + " mode");
    if (w.MediaReply == "paused") {
        w.MediaReply = MediaCommand(w, "play " + w.MediaAlias);
    } else if (w.MediaReply == "playing") {
        w.MediaReply = MediaCommand(w, "pause " + w.MediaAlias);
    }
}

void close_media(arcview& w) {
    w.MediaReply = MediaCommand(w, "close " + w.MediaAlias);
    w.MediaAlias.clear();
    w.Label24.text = "Files";
    w.Label21.text = files::join(text::to_lower(w.Label2.text), text::to_lower(w.Label4.text));
}

}  // namespace quill::zip
