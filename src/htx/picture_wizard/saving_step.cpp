#include "files/directory.h"
#include "files/path.h"
#include "htx/picture_wizard/making.h"
#include "htx/picture_wizard/steps.h"
#include "shell/startup.h"
#include "text/ascii.h"

namespace quill::htx {
namespace {

constexpr auto directory_note =
    "    To change where you wish to put the HTX file change to the directory you wish to have it on the left.";

/// Returns the typed name with its ending.
std::string full_name(const HtxWiz& w) {
    const std::string& name = w.Text5.text;
    if (w.makes_album()) return text::ends_with_ignoring_case(name, ".pics") ? name : name + ".pics";
    const bool stands = name.size() > 2 && text::ends_with_ignoring_case(name, "htx");
    return stands ? name : name + ".htx";
}

bool is_file_name(const std::string& name) {
    constexpr std::size_t longest = 255;
    return name.size() <= longest && name.find('/') == std::string::npos && name.find('\0') == std::string::npos;
}

}  // namespace

void enter_saving(HtxWiz& w) {
    show_step(w, WizardStep::saving);
    w.Label11.text = w.makes_album() ? "Name for the PICS file:" : "Name for the HTX file:";
    w.Text5.text.clear();
    w.Text4.text.clear();
    w.Command4.enabled = false;
    w.File1.set_pattern(w.makes_album() ? "*.pics" : "*.htx");
    const std::string directory = shell::in_parent_directory(w.context.session, "zip-htx directory");
    if (files::is_directory(directory)) enter_directory(w, directory);
}

void wire_saving(HtxWiz& w) {
    w.Text5.change = [&w] { w.Command4.enabled = !w.Text5.text.empty(); };
    w.Text6.change = [&w] {
        w.Text6.text = w.Dir1.path;
        w.context.platform.message(directory_note);
    };
}

void save(HtxWiz& w) {
    const std::string name = full_name(w);
    if (!is_file_name(name)) {
        w.context.platform.message("A file can't be called " + name + ", type a different filename.");
        return;
    }
    const std::string path = files::join(w.Dir1.path, name);
    constexpr std::uint64_t free_size = 1;
    if (files::exists(path) && files::file_size(path).value_or(free_size + 1) > free_size) return refuse_name(w, path);
    w.Text5.text = name;
    if (w.makes_album()) {
        make_album(w, path);
    } else {
        make_book(w, path);
    }
}

}  // namespace quill::htx
