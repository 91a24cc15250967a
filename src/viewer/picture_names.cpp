#include "viewer/picture_names.h"

#include "files/names.h"
#include "pics/format.h"
#include "text/ascii.h"

#include <algorithm>

namespace quill::viewer {
namespace {

using pics::thumbnail_prefix;
using pics::thumbnail_suffix;

}  // namespace

std::string column_patterns() {
    return std::string(directory_patterns).append(";").append(further_patterns());
}

std::string all_opener_patterns() {
    return std::string(opener_patterns).append(";*.png;*.jpeg;*.dib;").append(further_patterns());
}

bool is_picture_name(std::string_view name) {
    return files::matches(name, column_patterns());
}

bool is_album_name(std::string_view name) {
    constexpr std::string_view extension = ".pics";
    return name.size() > extension.size() && text::ends_with_ignoring_case(name, extension);
}

bool is_album_thumbnail(std::string_view name) {
    return name.size() > thumbnail_prefix.size() && name.starts_with(thumbnail_prefix);
}

std::string picture_of_album_thumbnail(std::string_view name) {
    name.remove_prefix(std::min(name.size(), thumbnail_prefix.size()));
    name.remove_suffix(std::min(name.size(), thumbnail_suffix.size()));
    return std::string(name);
}

std::string album_thumbnail_of(std::string_view picture) {
    return std::string(thumbnail_prefix).append(picture).append(thumbnail_suffix);
}

}  // namespace quill::viewer
