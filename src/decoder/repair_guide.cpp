#include "decoder/repair_guide.h"

#include "decoder/diagnosis.h"
#include "decoder/repair.h"
#include "decoder/repair_guide_texts.h"
#include "files/directory.h"
#include "files/mapped_file.h"
#include "files/path.h"

#include <span>
#include <string>
#include <string_view>

namespace quill::decoder {
namespace {

constexpr std::string_view unwrapper = "qpunwrap";

/// Clears the choices, so that each can be made again.
void reset_choice(Form3& w) {
    for (controls::Choice* choice : {&w.Option1, &w.Option2, &w.Option3, &w.option5, &w.Option6, &w.Option7, &w.Option8,
                                     &w.Option9, &w.Option10}) {
        choice->chosen = false;
    }
    w.Option4.chosen = true;
}

std::string findings(const std::string& path) {
    const Result<files::MappedFile> file = files::MappedFile::open(path);
    if (file) return diagnosis_text(file->bytes());
    return "The file " + files::name_of(path) + " could not be read: " + file.error().text + ".";
}

/// Starts the side program that undoes quoted-printable: the one installed for this user, else the one beside this
/// program.
void undo_quoted_printable(shell::Context& context, Form3& window) {
    const std::string own = files::join(context.session.AppDir, unwrapper);
    const std::string program = files::is_executable(own) ? own : std::string(unwrapper);
    const std::string& path = context.session.EncodedPath;
    const bool started = context.platform.opener().start(program, {path}, files::dir_of(path));
    window.Label2.text = std::string(started ? texts::unwrapper_started : texts::unwrapper_missing) + findings(path);
    reset_choice(window);
}

void look_at_file(shell::Context& context, Form3& window) {
    context.platform.opener().edit_text(context.session.EncodedPath);
    reset_choice(window);
    window.option5.enabled = true;
}

void show_tutorial(Form3& window) {
    window.fil.visible = true;
    window.Frame1.visible = true;
    reset_choice(window);
}

[[noreturn]] void leave(const shell::Context& context) {
    context.platform.end_session(files::name_of(context.session.EncodedPath) + " was not decoded.");
}

void say_and_end(const shell::Context& context, std::span<const std::string_view> messages) {
    for (const std::string_view message : messages) context.platform.message(std::string(message));
    leave(context);
}

/// Explains what the user may have seen, and repairs on Yes.
void offer_repair(shell::Context& context, Form3& window, std::string_view message, std::string_view question,
                  void (*repair)(shell::Context&)) {
    reset_choice(window);
    context.platform.message(std::string(message));
    const bool yes = context.platform.ask({.text = std::string(question),
                                           .title = std::string(texts::question_title),
                                           .no_is_default = true,
                                           .question_mark = true});
    if (yes) repair(context);
}

/// Returns true if everything above the sample's first content type has been deleted; a line end may remain.
bool begins_with_content_type(std::string_view sample) {
    const bool after_line_feed = sample.starts_with('\n') && sample.substr(1).starts_with(texts::sample_begins);
    return after_line_feed || sample.starts_with(texts::sample_begins) ||
           (sample.size() > 2 && sample.substr(2).starts_with(texts::sample_begins));
}

void save_in_tutorial(platform::Platform& platform, Form3& window) {
    platform.message(std::string(texts::save_is_right));
    if (!begins_with_content_type(window.Text1.text)) {
        platform.message(std::string(texts::lines_left));
        return;
    }
    window.Frame1.visible = false;
    window.fil.visible = false;
}

void connect_menu(platform::Platform& platform, Form3& window) {
    struct Wrong {
        controls::MenuItem& item;
        std::string_view answer;
    };
    for (const Wrong& wrong : {Wrong{window.ope, texts::open_is_wrong}, Wrong{window.prnt, texts::print_is_wrong},
                               Wrong{window.sava, texts::save_as_is_harder}, Wrong{window.edd, texts::end_is_harder}}) {
        wrong.item.click = [&platform, answer = wrong.answer] { platform.message(std::string(answer)); };
    }
    window.sav.click = [&platform, &window] { save_in_tutorial(platform, window); };
}

void connect(shell::Context context, Form3& w) {
    platform::Platform& platform = context.platform;
    w.Option1.click = [context, &w]() mutable { undo_quoted_printable(context, w); };
    w.Option2.click = [context, &w]() mutable { look_at_file(context, w); };
    w.Option3.click = [&w] { show_tutorial(w); };
    w.option5.click = [&w] { w.Frame2.visible = true; };
    w.Command1.click = [context] { leave(context); };
    w.close = w.Command1.click;

    w.Option6.click = [context] { say_and_end(context, texts::not_encoded); };
    w.Option7.click = [context, &w]() mutable {
        offer_repair(context, w, texts::about_even_rows, texts::saw_even_rows, otherfom);
    };
    w.Option8.click = [context, &w]() mutable {
        offer_repair(context, w, texts::about_long_line, texts::saw_long_line, refom);
    };
    w.Option9.click = [context] { say_and_end(context, texts::write_to_us); };
    w.Option10.click = [&w] {
        w.Frame2.visible = false;
        reset_choice(w);
    };
    connect_menu(platform, w);
}

void centre(platform::Machine& machine, Form3& window) {
    window.left = (machine.screen_width() - window.width) / 2;
    window.top = (machine.screen_height() - window.height) / 2;
}

}  // namespace

Form3::Form3() {
    caption = "Quillbright Pro 2012";
    width = 11400;
    height = 10200;
    Label1.text = texts::having_trouble;
    Option1.caption = "Check to see if its a quoted-printable encoded file";
    Option2.caption = "Load the file into a text editor to see if its encoded and to edit it";
    Option3.caption = "How to tell if it can be decoded or not and how to edit it";
    option5.caption = "Other options (for after you have looked at it in a text editor)";
    option5.enabled = false;
    Option4.visible = false;
    Option4.chosen = true;
    Command1.caption = "Cancel";

    Frame1.visible = false;
    Frame1.caption = "How to tell if it can be decoded or not and how to edit it";
    Label3.text = texts::tutorial;
    Text1.text = texts::sample_message;

    Frame2.visible = false;
    Frame2.caption = "Other options";
    Label4.text = "What did the file look like when you looked at it in a text editor?";
    Option6.caption = texts::looked_binary;
    Option7.caption = texts::looked_even;
    Option8.caption = texts::looked_like_one_line;
    Option9.caption = "What I saw matches none of these descriptions";
    Option10.caption = "Cancel";

    fil.visible = false;
    fil.caption = "&File";
    ope.caption = "Open";
    sav.caption = "Save";
    sava.caption = "Save as...";
    prnt.caption = "Print";
    edd.caption = "End";
}

void show_repair_guide(shell::Context& context) {
    Form3& window = context.windows.load<Form3>();
    connect(context, window);
    centre(context.platform.machine(), window);
    window.Label2.text = findings(context.session.EncodedPath);
    window.pointer = controls::MousePointer::normal;
    window.visible = true;
    context.platform.repaint(window);
}

}  // namespace quill::decoder
