#include "encoder/encode_file.h"

#include "codec/writing/encode.h"
#include "encoder/file_chooser.h"
#include "encoder/output_choice.h"
#include "files/directory.h"
#include "files/path.h"
#include "files/unfinished.h"
#include "shell/main_window.h"
#include "viewer/file_run.h"

namespace quill::encoder {
namespace {

void refresh_chooser(shell::Context& context) {
    if (cmdg* const chooser = context.windows.loaded<cmdg>()) chooser->File1.refresh();
}

}  // namespace

Encoding encode_or_say(shell::Context& context, const codec::OutputFormat& format, const std::string& path) {
    const std::string wanted = codec::default_output_path(format, path);
    std::optional<OutputChoice> output = OutputChoice{wanted};
    if (!files::same_file(path, wanted)) output = choose_output(context.platform, wanted);
    if (!output) return Encoding::withdrawn;
    const std::string names = files::name_of(path) + " as " + files::name_of(output->path);
    const auto written = [&] {
        files::remove_abandoned(files::dir_of(output->path));
        viewer::FileRun run(context, "Encoding " + names);
        const auto progress = [&](std::uint64_t done, std::uint64_t total) { return run.goes_on(done, total); };
        return codec::encode_file(path, output->path, format, {.on_collision = output->on_collision}, progress);
    }();
    if (written) return Encoding::done;
    if (written.error().code == ErrorCode::cancelled) return Encoding::withdrawn;
    context.platform.warn("\"" + files::name_of(path) + "\" could not be encoded as \"" + output->path +
                          "\": " + written.error().text + ".");
    return Encoding::failed;
}

void leave_chooser_after_encoding(shell::Context& context, Encoding encoding) {
    refresh_chooser(context);
    if (encoding == Encoding::withdrawn) return;
    if (encoding == Encoding::done) context.platform.message("Done.");
    refresh_chooser(context);
    context.windows.unload<cmdg>();
    context.windows.load<shell::swit>().visible = true;
}

void encod(shell::Context& context, int EncodeKind, const std::string& path) {
    const codec::OutputFormat* const format = codec::output_format(EncodeKind);
    if (format == nullptr) return;
    const Encoding encoding = encode_or_say(context, *format, path);
    if (encoding != Encoding::withdrawn) context.windows.load<shell::swit>().Label3.text.clear();
    leave_chooser_after_encoding(context, encoding);
}

}  // namespace quill::encoder
