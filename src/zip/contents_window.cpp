#include "zip/contents_window.h"

#include "files/directory.h"
#include "shell/main_window.h"
#include "zip/member_rows.h"

namespace quill::zip {
namespace {

constexpr int window_width = 9600;  // twips
constexpr int window_height = 6300;

}  // namespace

Form1::Form1(shell::Context& context) {
    const platform::Machine& machine = context.platform.machine();
    width = window_width;
    height = window_height;
    left = (machine.screen_width() - width) / 2;
    top = (machine.screen_height() - height) / 2;
    visible = false;
    Label3.text = "Size Compressed:";
    Label4.text = "Size Uncompressed:";
    Label6.text = "Date/time";
    Label7.text = "Size now";
    Label8.text = "Original Size";
    Label9.text = "File names";
    Command1.caption = "Close";
    if (const shell::swit* main = context.windows.loaded<shell::swit>()) {
        if (const auto size = files::file_size(main->Label3.text)) Label2.text = grouped(*size);
    }
    close = [&context] {
        context.windows.unload<Form1>();
        if (context.session.ViewOnlyRun) context.platform.end_process();
    };
    Command1.click = close;
}

}  // namespace quill::zip
