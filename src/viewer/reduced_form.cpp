#include "viewer/reduced_form.h"

#include "files/directory.h"
#include "files/path.h"
#include "shell/about_box.h"
#include "shell/main_workflow.h"

namespace quill::viewer {

void caption_help(controls::ControlArray<controls::MenuItem>& items) {
    items(1).caption = "Help for Quillbright Pro 2003";
    items(3).caption = "Why some menu items are blocked out and where to find the full Lumenreel Pro 2003";
    items(5).caption = "About...";
}

void wire_help(shell::Context& context, controls::ControlArray<controls::MenuItem>& items) {
    items(1).click = [&context] { shell::open_user_guide(context); };
    items(3).click = [&context] { microhelp(context.platform); };
    items(5).click = [&context] { shell::show_about_box(context); };
}

void microhelp(platform::Platform& platform) {
    for (const char* text :
         {"   This picture viewer is the small form of a larger one, Lumenreel Pro. It shows pictures, the pictures of "
          "directories, albums (PICS files) and lists of favorite pictures.",
          "   The menus are those of the larger viewer. The items that are grey belong to that one and do nothing "
          "here: "
          "shrinking and enlarging, printing, rotating, colors, slideshow, autopan and the toolbar.",
          "   All other items work. Nothing that you do here changes a picture's file."}) {
        platform.message(text);
    }
}

}  // namespace quill::viewer
