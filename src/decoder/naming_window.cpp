#include "decoder/naming_window.h"

#include "decoder/headered_copy.h"
#include "files/path.h"
#include "text/ascii.h"

#include <string>

namespace quill::decoder {
namespace {

/// Returns the extension that was typed, else the chosen one, with its dot; empty if there is neither.
std::string wanted_extension(Form4& window) {
    const std::string typed(text::trim(window.Text1.text));
    if (!typed.empty()) return typed.starts_with('.') ? typed : "." + typed;
    std::string chosen;
    window.Option1.for_each([&](int, const controls::Choice& choice) {
        if (choice.chosen) chosen = choice.caption;
    });
    return chosen;
}

[[noreturn]] void leave(const shell::Context& context) {
    context.platform.end_session("Nothing was made of " + files::name_of(context.session.EncodedPath) + ".");
}

void give_header(shell::Context& context, std::size_t line_length) {
    Form4& window = context.windows.load<Form4>();
    platform::Platform& platform = context.platform;
    const std::string extension = wanted_extension(window);
    if (extension.empty()) {
        platform.message(
            "   You have not said what type of file to call it. Select an option above or type a 3 letter extension "
            "for what type of file you think it is for me to call it after decoding it.");
        return;
    }
    const std::string answer =
        platform.input({.text = "What would you like to call this file? NOTE: You don't have to type the extension, I "
                                "will add the " +
                                extension + " to the file's name for you.",
                        .title = "Name for the file?",
                        .default_answer = "Temporary"});
    if (answer.empty()) leave(context);
    ask_for_headered_copy(context);

    const std::string original = files::name_of(context.session.EncodedPath);
    const Result<std::string> copy = write_headered_copy(context, answer + extension, line_length);
    if (!copy && copy.error().code == ErrorCode::cancelled) return;
    if (!copy) {
        platform.warn("   The new file could not be written: " + copy.error().text + ".");
        return;
    }
    platform.message("   You can now restart the program and choose the " + *copy + " file to decode instead of the " +
                     original + " file and it should decode for you.");
    platform.end_session(*copy + " was made of " + original + " and can be decoded now.", context.session.EncodedPath);
}

}  // namespace

void show_naming_window(shell::Context& context, const std::string& hint, std::size_t line_length) {
    Form4& window = context.windows.load<Form4>();
    window.caption = "File name not found";
    window.Label3.text = hint;
    window.Frame1.visible = true;
    window.Frame2.visible = false;
    window.Command3.click = [context, line_length]() mutable { give_header(context, line_length); };
    window.Command4.click = [context] { leave(context); };
    window.close = window.Command4.click;
    window.visible = true;
    context.platform.repaint(window);
}

}  // namespace quill::decoder
