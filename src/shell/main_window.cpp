#include "shell/main_window.h"

namespace quill::shell {

swit::swit() {
    Picture2.visible = false;
    Picture4.visible = false;
    Frame2.visible = false;
    Picture5.visible = false;
    File2.visible = File3.visible = List2.visible = List4.visible = Text1.visible = false;

    Timer2.interval = 10;
    Timer22.interval = 3000;
}

}  // namespace quill::shell
