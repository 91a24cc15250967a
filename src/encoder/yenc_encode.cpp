#include "encoder/yenc_encode.h"

#include "codec/writing/encode.h"
#include "encoder/encode_file.h"
#include "encoder/file_chooser.h"

namespace quill::encoder {

void yencod(shell::Context& context, const std::string& path) {
    cmdg* const chooser = context.windows.loaded<cmdg>();
    const auto point = [&](controls::MousePointer pointer) {
        if (chooser == nullptr) return;
        chooser->pointer = pointer;
        context.platform.repaint(*chooser);
    };
    point(controls::MousePointer::busy);
    const Encoding encoding = encode_or_say(context, *codec::output_format("yenc"), path);
    point(controls::MousePointer::normal);
    leave_chooser_after_encoding(context, encoding);
}

}  // namespace quill::encoder
