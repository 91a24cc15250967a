#include "codec/recovery/disguise.h"

#include "codec/recovery/content_name.h"
#include "files/path.h"
#include "text/ascii.h"
#include "text/utf8.h"

#include <algorithm>
#include <array>
#include <string>

namespace quill::codec {
namespace {

constexpr std::string_view programs =
    ".exe.com.scr.pif.bat.cmd.msi.msp.cpl.hta.vbs.vbe.js.jse.wsf.wsh.ps1.lnk.reg.jar.sh.run.desktop.appimage.deb.rpm."
    "command.app.apk.";

constexpr std::string_view documents =
    ".jpg.jpeg.gif.png.bmp.tif.tiff.webp.heic.svg.pdf.doc.docx.odt.rtf.txt.xls.xlsx.ods.csv.ppt.pptx.odp.htm.html.eml."
    "ics.vcf.mp3.wav.ogg.mp4.avi.mov.mpg.mpeg.wmv.zip.rar.7z.";

/// Returns true if `extension`, with its dot and in lower case, is one of `list`.
bool is_one_of(std::string_view list, std::string_view extension) {
    return extension.size() > 1 && list.find(std::string(extension) + ".") != std::string_view::npos;
}

/// Returns the extension in lower case, without blanks at its end.
std::string extension_of(std::string_view name) {
    return text::to_lower(text::trim(name.substr(files::extension_at(name))));
}

/// Returns true if the name reads differently from its characters: several blanks in a row, or characters that a safe
/// name drops without a trace.
bool misleads(std::string_view name) {
    const std::string utf8 = text::to_utf8(name);
    bool blank = false;
    for (std::string_view rest = utf8; !rest.empty();) {
        const char32_t c = text::next_character(rest);
        if (is_unseen(c) || (blank && is_blank_character(c))) return true;
        blank = is_blank_character(c);
    }
    return false;
}

}  // namespace

std::optional<Problem> disguise_of(std::string_view name, std::uint64_t at_input) {
    const std::string safe = attachment_name(name);
    const std::string extension = extension_of(safe);
    if (!is_one_of(programs, extension)) return std::nullopt;
    const std::string_view stem = text::trim(std::string_view(safe).substr(0, files::extension_at(safe)));
    if (!misleads(text::trim(name)) && !is_one_of(documents, extension_of(stem))) return std::nullopt;
    return Problem{ProblemKind::disguised_name,
                   at_input,
                   {},
                   "The name makes this file look like something else, but it is a program (" + extension + ")"};
}

}  // namespace quill::codec
