#pragma once

#include <string>
#include <string_view>

/// What file names mean to the viewer.
namespace quill::viewer {

/// The files that the window for opening pictures initially lists.
constexpr std::string_view opener_patterns = "*.jpg;*.bmp;*.pics;*.gif;*.tif;*.tga;*.pic";

/// The files in the column's own list of a directory.
constexpr std::string_view directory_patterns = "*.bmp;*.gif;*.png;*.jpg;*.jpeg;*.dib;*.tif;*.tga";

/// Returns the patterns of further kinds of pictures that can be shown.
constexpr std::string_view further_patterns() {
    return "*.tiff;*.webp;*.ico;*.pcx;*.pnm;*.ppm;*.pgm;*.pbm;*.xbm;*.xpm";
}

/// Returns all picture patterns that the column shows of a directory.
std::string column_patterns();

/// Returns all patterns that the window for opening pictures can list.
std::string all_opener_patterns();

/// Returns true if a file of that name is shown as a picture.
bool is_picture_name(std::string_view name);

/// Returns true for the name of an album, with something before its extension.
bool is_album_name(std::string_view name);

/// Returns true for a stored thumbnail's name: the picture's between "!R29!" and ".bmp".
bool is_album_thumbnail(std::string_view name);
std::string picture_of_album_thumbnail(std::string_view name);
std::string album_thumbnail_of(std::string_view picture);

}  // namespace quill::viewer
