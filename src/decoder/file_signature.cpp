#include "decoder/file_signature.h"

#include "text/ascii.h"

#include <array>

namespace quill::decoder {
namespace {

using namespace std::string_view_literals;

constexpr std::string_view archive = "package-x-generic";
constexpr std::string_view sound = "audio-x-generic";
constexpr std::string_view video = "video-x-generic";
constexpr std::string_view document = "x-office-document";
constexpr std::string_view program = "application-x-executable";
constexpr std::string_view page = "text-html";
constexpr std::string_view plain_text = "text-x-generic";

constexpr std::array signatures = {
    FileSignature{"\xFF\xD8\xFF"sv, 0, "a JPEG picture", ".jpg", picture_icon},
    FileSignature{"GIF8"sv, 0, "a GIF picture", ".gif", picture_icon},
    FileSignature{"\x89PNG\r\n\x1A\n"sv, 0, "a PNG picture", ".png", picture_icon},
    FileSignature{"II*\0"sv, 0, "a TIFF picture", ".tif", picture_icon},
    FileSignature{"MM\0*"sv, 0, "a TIFF picture", ".tif", picture_icon},
    FileSignature{"WEBP"sv, 8, "a WebP picture", ".webp", picture_icon},
    FileSignature{"PK\x03\x04"sv, 0, "a ZIP archive (or a modern office document, which is one inside)", ".zip",
                  archive},
    FileSignature{"Rar!\x1A\x07"sv, 0, "a RAR archive", ".rar", archive},
    FileSignature{"7z\xBC\xAF\x27\x1C"sv, 0, "a 7-Zip archive", ".7z", archive},
    FileSignature{"\x1F\x8B\x08"sv, 0, "a gzip archive", ".gz", archive},
    FileSignature{"BZh"sv, 0, "a bzip2 archive", ".bz2", archive},
    FileSignature{"\xFD"
                  "7zXZ\0"sv,
                  0, "an xz archive", ".xz", archive},
    FileSignature{"ustar"sv, 257, "a tar archive", ".tar", archive},
    FileSignature{"%PDF-"sv, 0, "a PDF document", ".pdf", document},
    FileSignature{"\xD0\xCF\x11\xE0\xA1\xB1\x1A\xE1"sv, 0, "an office document of the older kind", ".doc", document},
    FileSignature{"{\\rtf"sv, 0, "a rich text document", ".rtf", document},
    FileSignature{"\x78\x9F\x3E\x22"sv, 0, "a winmail.dat package, which holds attachments in a form of its own",
                  ".dat", archive},
    FileSignature{"\x7F"
                  "ELF"sv,
                  0, "a program", ".bin", program},
    FileSignature{"MZ\x90"sv, 0, "a Windows program", ".exe", program},
    FileSignature{"ID3"sv, 0, "an MP3 sound", ".mp3", sound},
    FileSignature{"OggS"sv, 0, "an Ogg sound or film", ".ogg", sound},
    FileSignature{"WAVE"sv, 8, "a WAV sound", ".wav", sound},
    FileSignature{"AVI "sv, 8, "an AVI film", ".avi", video},
    FileSignature{"ftyp"sv, 4, "an MP4 film", ".mp4", video},
    FileSignature{"\x00\x00\x01\xBA"sv, 0, "an MPEG film", ".mpg", video},
};

/// Endings of names and the icon of their type.
struct Extension {
    std::string_view endings;  ///< each with its dot, one behind the other, closed by a dot
    std::string_view icon;
};
constexpr std::array extensions = {
    Extension{".jpg.jpeg.jpe.gif.png.bmp.dib.tif.tiff.webp.ico.svg.pcx.tga.", picture_icon},
    Extension{".zip.htx.rar.7z.gz.tgz.bz2.xz.tar.arj.lzh.cab.sit.hqx.", archive},
    Extension{".mp3.wav.ogg.flac.m4a.mid.midi.au.aif.aiff.wma.", sound},
    Extension{".avi.mpg.mpeg.mp4.mov.wmv.mkv.webm.", video},
    Extension{".pdf.doc.docx.odt.rtf.xls.xlsx.ods.ppt.pptx.odp.ps.eps.", document},
    Extension{".exe.com.scr.pif.bat.cmd.msi.sh.run.appimage.deb.rpm.vbs.js.jar.", program},
    Extension{".htm.html.xhtml.", page},
};

}  // namespace

const FileSignature* signature_of(std::string_view beginning) {
    for (const FileSignature& signature : signatures) {
        const bool long_enough = beginning.size() >= signature.offset + signature.bytes.size();
        if (long_enough && beginning.substr(signature.offset).starts_with(signature.bytes)) return &signature;
    }
    return nullptr;
}

std::string_view icon_for_name(std::string_view name) {
    const std::size_t dot = name.rfind('.');
    if (dot == name.npos) return plain_text;
    const std::string ending = text::to_lower(name.substr(dot)) + ".";
    for (const Extension& extension : extensions) {
        if (extension.endings.find(ending) != extension.endings.npos) return extension.icon;
    }
    return plain_text;
}

}  // namespace quill::decoder
