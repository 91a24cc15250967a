#include "integration/file_icons.h"

#include "decoder/type_icons.h"
#include "files/directory.h"
#include "files/path.h"

namespace quill::integration {

FileIcon getticon(const std::string& path, int size) {
    if (!files::file_size(path)) return {{}, size == 1};
    return {decoder::icon_for_name(files::name_of(path)), size == 1};
}

}  // namespace quill::integration
