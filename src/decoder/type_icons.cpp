#include "decoder/type_icons.h"

#include "text/ascii.h"

#include <array>
#include <cstddef>

namespace quill::decoder {
namespace {

constexpr std::string_view picture = "image-x-generic";
constexpr std::string_view archive = "package-x-generic";
constexpr std::string_view sound = "audio-x-generic";
constexpr std::string_view video = "video-x-generic";
constexpr std::string_view document = "x-office-document";
constexpr std::string_view program = "application-x-executable";
constexpr std::string_view page = "text-html";
constexpr std::string_view plain_text = "text-x-generic";

/// In the order of FileKind.
constexpr std::array kind_icons = {picture, archive, sound, video, document, program, plain_text};

/// Name endings and the icon of their type.
struct Extension {
    std::string_view endings;  ///< each with its dot, one after the other, terminated by a dot
    std::string_view icon;
};
constexpr std::array extensions = {
    Extension{".jpg.jpeg.jpe.gif.png.bmp.dib.tif.tiff.webp.ico.svg.pcx.tga.", picture},
    Extension{".zip.htx.rar.7z.gz.tgz.bz2.xz.tar.arj.lzh.cab.sit.hqx.", archive},
    Extension{".mp3.wav.ogg.flac.m4a.mid.midi.au.aif.aiff.wma.", sound},
    Extension{".avi.mpg.mpeg.mp4.mov.wmv.mkv.webm.", video},
    Extension{".pdf.doc.docx.odt.rtf.xls.xlsx.ods.ppt.pptx.odp.ps.eps.", document},
    Extension{".exe.com.scr.pif.bat.cmd.msi.sh.run.appimage.deb.rpm.vbs.js.jar.", program},
    Extension{".htm.html.xhtml.", page},
};

}  // namespace

std::string_view icon_for_kind(codec::FileKind kind) {
    return kind_icons.at(static_cast<std::size_t>(kind));
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
