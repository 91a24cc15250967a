#include "decoder/opening.h"

#include "decoder/active_types.h"
#include "files/mapped_file.h"
#include "files/path.h"

#include <string_view>

namespace quill::decoder {

bool may_open(shell::Context& context, const std::string& path) {
    const Result<files::MappedFile> file = files::MappedFile::open(path);
    const std::string name = files::name_of(path);
    const std::string_view what = active_type(name, file ? file->bytes() : std::string_view());
    if (what.empty()) return true;
    return context.platform.ask({.text = "   " + name + " is " + std::string(what) +
                                         ". Files of this kind that came from someone else may do harm. Do you want to "
                                         "open it all the same?",
                                 .no_is_default = true,
                                 .question_mark = true});
}

}  // namespace quill::decoder
