#include "codec/recovery/file_signature.h"

#include <algorithm>
#include <array>

namespace quill::codec {
namespace {

using namespace std::string_view_literals;
using enum FileKind;

constexpr std::string_view riff = "RIFF";

constexpr std::array signatures = {
    // marks, kind, extension, what
    FileSignature{{0, "\xFF\xD8\xFF"}, {}, picture, ".jpg", "a JPEG picture"},
    FileSignature{{0, "GIF87a"}, {}, picture, ".gif", "a GIF picture"},
    FileSignature{{0, "GIF89a"}, {}, picture, ".gif", "a GIF picture"},
    FileSignature{{0, "\x89PNG\r\n\x1A\n"}, {}, picture, ".png", "a PNG picture"},
    FileSignature{{0, "II*\0"sv}, {}, picture, ".tif", "a TIFF picture"},
    FileSignature{{0, "MM\0*"sv}, {}, picture, ".tif", "a TIFF picture"},
    FileSignature{{0, riff}, {8, "WEBP"}, picture, ".webp", "a WebP picture"},
    FileSignature{{4, "ftypheic"}, {}, picture, ".heic", "a HEIF picture"},
    FileSignature{{4, "ftypheix"}, {}, picture, ".heic", "a HEIF picture"},
    FileSignature{{4, "ftypmif1"}, {}, picture, ".heic", "a HEIF picture"},
    FileSignature{{4, "ftypavif"}, {}, picture, ".avif", "an AVIF picture"},
    FileSignature{
        {0, "PK\x03\x04"}, {}, archive, ".zip", "a ZIP archive (or a modern office document, which is one inside)"},
    FileSignature{{0, "PK\x05\x06"}, {}, archive, ".zip", "an empty ZIP archive"},
    FileSignature{{0, "Rar!\x1A\x07"}, {}, archive, ".rar", "a RAR archive"},
    FileSignature{{0, "7z\xBC\xAF\x27\x1C"}, {}, archive, ".7z", "a 7-Zip archive"},
    FileSignature{{0, "\x1F\x8B\x08"}, {}, archive, ".gz", "a gzip archive"},
    FileSignature{{0, "BZh"}, {4, "1AY&SY"}, archive, ".bz2", "a bzip2 archive"},
    FileSignature{{0, "BZh"}, {4, "\x17rE8P\x90"}, archive, ".bz2", "an empty bzip2 archive"},
    FileSignature{{0, "\xFD\x37zXZ\0"sv}, {}, archive, ".xz", "an xz archive"},
    FileSignature{{257, "ustar"}, {}, archive, ".tar", "a tar archive"},
    FileSignature{{0, "\x78\x9F\x3E\x22"},
                  {},
                  archive,
                  ".dat",
                  "a winmail.dat package, which holds attachments in a form of its own"},
    FileSignature{{0, "%PDF-"}, {}, document, ".pdf", "a PDF document"},
    FileSignature{{0, "%!PS"}, {}, document, ".ps", "a PostScript document"},
    FileSignature{
        {0, "\xD0\xCF\x11\xE0\xA1\xB1\x1A\xE1"}, {}, document, ".doc", "an office document of the older kind"},
    FileSignature{{0, "{\\rtf"}, {}, document, ".rtf", "a rich text document"},
    FileSignature{{0, "\x7F\x45LF"}, {}, program, ".bin", "a program"},
    FileSignature{{0, "MZ\x90"}, {}, program, ".exe", "a Windows program"},
    FileSignature{{0, "MZP\0"sv}, {}, program, ".exe", "a Windows program"},
    FileSignature{{0, "ID3\x02"}, {}, sound, ".mp3", "an MP3 sound"},
    FileSignature{{0, "ID3\x03"}, {}, sound, ".mp3", "an MP3 sound"},
    FileSignature{{0, "ID3\x04"}, {}, sound, ".mp3", "an MP3 sound"},
    FileSignature{{0, "OggS"}, {}, sound, ".ogg", "an Ogg sound or film"},
    FileSignature{{0, "fLaC"}, {}, sound, ".flac", "a FLAC sound"},
    FileSignature{{0, "MThd\0\0\0\x06"sv}, {}, sound, ".mid", "a MIDI sound"},
    FileSignature{{0, riff}, {8, "WAVE"}, sound, ".wav", "a WAV sound"},
    FileSignature{{4, "ftypM4A "}, {}, sound, ".m4a", "an MP4 sound"},
    FileSignature{{0, riff}, {8, "AVI "}, video, ".avi", "an AVI film"},
    FileSignature{{4, "ftypqt  "}, {}, video, ".mov", "a QuickTime film"},
    FileSignature{{4, "ftyp"}, {}, video, ".mp4", "an MP4 film"},
    FileSignature{{4, "moov"}, {}, video, ".mov", "a QuickTime film"},
    FileSignature{{0, "\0\0\x01\xBA"sv}, {}, video, ".mpg", "an MPEG film"},
    FileSignature{{0, "\0\0\x01\xB3"sv}, {}, video, ".mpg", "an MPEG film"},
    FileSignature{{0, "<!DOCTYPE html"}, {}, text, ".html", "a web page"},
    FileSignature{{0, "<html"}, {}, text, ".html", "a web page"},
    FileSignature{{0, "<?xml"}, {}, text, ".xml", "an XML text"},
};

constexpr bool bears(std::string_view beginning, const Mark& mark) {
    return beginning.size() >= mark.offset && beginning.substr(mark.offset).starts_with(mark.bytes);
}

static_assert(std::all_of(signatures.begin(), signatures.end(), [](const FileSignature& s) {
    return s.mark.bytes.size() + s.second.bytes.size() > 2 &&
           std::max(s.mark.offset + s.mark.bytes.size(), s.second.offset + s.second.bytes.size()) <= longest_signature;
}));

}  // namespace

const FileSignature* signature_of(std::string_view beginning) {
    const auto found = std::find_if(signatures.begin(), signatures.end(), [&](const FileSignature& signature) {
        return bears(beginning, signature.mark) && bears(beginning, signature.second);
    });
    return found == signatures.end() ? nullptr : &*found;
}

}  // namespace quill::codec
