#include "decoder/active_types.h"

#include "codec/recovery/file_signature.h"
#include "files/path.h"
#include "text/ascii.h"

#include <array>
#include <string>

namespace quill::decoder {
namespace {

/// Name endings and descriptions of such files. Ordinary programs are missing: the desktop refuses them.
struct ActiveType {
    std::string_view endings;  ///< each with its dot, terminated by a dot
    std::string_view what;
};
constexpr std::array active_types = {
    ActiveType{".html.htm.shtml.xhtml.xht.mht.mhtml.hta.htc.", "a web page, which can run scripts and load more"},
    ActiveType{".svg.svgz.", "a drawing that can run scripts like a web page"},
    ActiveType{".xml.xsl.xslt.xul.", "an XML text, which can run scripts in a web browser"},
    ActiveType{".swf.", "a Flash film, which is a program"},
    ActiveType{".url.webloc.website.inetloc.fileloc.afploc.mcd.", "a link to a place in the network"},
    ActiveType{".lnk.pif.scf.appref-ms.library-ms.search-ms.searchconnector-ms.settingcontent-ms.theme.themepack.",
               "a Windows shortcut, which can run commands"},
    ActiveType{".jnlp.application.appinstaller.", "a link that downloads a program and runs it"},
    ActiveType{".rdp.ica.vnc.remmina.", "a link to another computer's screen"},
    ActiveType{".ovpn.mobileconfig.", "settings of a network, which can hold commands"},
    ActiveType{".vbs.vbe.js.jse.mjs.ws.wsf.wsh.wsc.sct.ps1.psm1.psd1.ps1xml.psc1.cmd.btm.hlp.chm.msc.cpl.scr.com.reg."
               "inf.gadget.",
               "a script or program for Windows"},
    ActiveType{".command.tool.action.workflow.scpt.scptd.applescript.terminal.osx.", "a script for macOS"},
    ActiveType{".py.pyw.pyc.pyo.pyz.pl.pm.rb.php.phtml.lua.tcl.tk.awk.r.jl.groovy.ipynb.asp.aspx.jsp.class.",
               "a script or program of a programming language"},
    ActiveType{".bash.zsh.ksh.csh.tcsh.fish.run.bin.kdelnk.service.autostart.", "a script or program"},
    ActiveType{".deb.rpm.udeb.apk.pkg.mpkg.dmg.msix.msixbundle.appx.appxbundle.msp.mst.snap.flatpak.flatpakrepo.ebuild."
               "eopkg.xpi.crx.oxt.vsix.plasmoid.air.",
               "a package, which installs programs"},
    ActiveType{".iso.img.vhd.vhdx.udf.cue.toast.", "an image of a disk, which can hold programs"},
    ActiveType{".docm.dotm.xlsm.xltm.xlam.xlsb.pptm.potm.ppsm.ppam.sldm.xla.xlm.xll.xlw.wll.ppa.wbk.wiz.",
               "an office document with macros, which are programs"},
    ActiveType{".accdb.accde.accda.accdr.mdb.mde.mda.ade.adp.mam.maf.mar.odb.", "a database, which can hold macros"},
    ActiveType{".iqy.oqy.dqy.rqy.slk.odc.udl.", "a table that can load its data from elsewhere and run commands"},
    ActiveType{".one.onetoc2.onepkg.", "a notebook, which can hold programs"},
};

std::string ending_of(std::string_view name, std::string_view beginning) {
    const std::string_view trimmed = name.substr(0, name.find_last_not_of(". ") + 1);
    const std::string ending = text::to_lower(trimmed.substr(files::extension_at(trimmed)));
    const codec::FileSignature* signature = ending.empty() ? codec::signature_of(beginning) : nullptr;
    return signature == nullptr ? ending : std::string(signature->extension);
}

}  // namespace

std::string_view active_type(std::string_view name, std::string_view beginning) {
    const std::string ending = ending_of(name, beginning) + ".";
    if (ending.size() < 3) return {};
    for (const ActiveType& type : active_types) {
        if (type.endings.find(ending) != std::string_view::npos) return type.what;
    }
    return {};
}

}  // namespace quill::decoder
