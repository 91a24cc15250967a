#include "encoder/encode_file.h"

#include "codec/encode.h"
#include "encoder/file_chooser.h"
#include "files/path.h"
#include "shell/main_window.h"

namespace quill::encoder {
namespace {

void refresh_chooser(shell::Context& context) {
    if (cmdg* const chooser = context.windows.loaded<cmdg>()) chooser->File1.refresh();
}

}  // namespace

bool encode_or_say(shell::Context& context, const codec::OutputFormat& format, const std::string& path) {
    const std::string output = codec::default_output_path(format, path);
    const auto written = codec::encode_file(path, output, format);
    if (written) return true;
    context.platform.message("\"" + files::name_of(path) + "\" could not be encoded as \"" + output +
                             "\": " + written.error().text + ".");
    return false;
}

void leave_chooser_after_encoding(shell::Context& context, bool done) {
    refresh_chooser(context);
    if (done) context.platform.message("Done.");
    refresh_chooser(context);
    context.windows.unload<cmdg>();
    context.windows.load<shell::swit>().visible = true;
}

void encod(shell::Context& context, int EncodeKind, const std::string& path) {
    const codec::OutputFormat* const format = codec::output_format(EncodeKind);
    if (format == nullptr) return;
    encode_or_say(context, *format, path);
    context.windows.load<shell::swit>().Label3.text.clear();
    leave_chooser_after_encoding(context, true);
}

}  // namespace quill::encoder
