#include "shell/small_window.h"

#include <array>

namespace quill::shell {
namespace {

constexpr std::array extensions = {".jpg", ".doc", ".gif", ".pdf", ".htm"};

}  // namespace

Form4::Form4() {
    Frame1.visible = false;
    Frame2.visible = false;
    Label4.text =
        "There was no extension found on this file. This file appears to be an encoded file without a header to name "
        "the file nor does the file name provide a clue as to what to call it. Click on a type below to call it or "
        "type in your own extension for after it is decoded.";
    Option1.for_each(
        [](int i, controls::Choice& choice) { choice.caption = extensions.at(static_cast<std::size_t>(i)); });
    Label2.text = "or type your own";
    Command3.caption = "OK";
    Command4.caption = "Cancel";
    Command1.caption = "Make link";
    Command2.caption = "Cancel";
}

}  // namespace quill::shell
