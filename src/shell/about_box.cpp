#include "shell/about_box.h"

#include <string>

namespace quill::shell {

std::string_view version() {
    return QUILL_VERSION;
}

AboutBox::AboutBox() {
    caption = "About Quillbright Pro 2012";
    Label1.text = "Quillbright Pro 2012";
    Label2.text = "Version " + std::string(version());
    Label3.text =
        "Gets the attachments out of saved mails and newsgroup posts, makes such files, and works with ZIP files, "
        "books of pages and sets of pictures.";
    Label4.text = "Free software under the MIT License. It comes without any warranty.";
    Command1.caption = "OK";
}

void show_about_box(Context& context) {
    auto& w = context.windows.load<AboutBox>();
    w.visible = true;
    w.close = w.Command1.click = [&context] { context.windows.unload<AboutBox>(); };
}

}  // namespace quill::shell
