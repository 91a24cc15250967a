#include "shell/create_panels.h"

#include "files/directory.h"
#include "files/mounts.h"
#include "shell/main_window.h"
#include "shell/startup.h"
#include "shell/tutorial.h"
#include "text/ascii.h"

#include <string>

namespace quill::shell {
namespace {

constexpr int encoded_choice_width = 3000;  // twips, while the kinds of encoded files are shown

constexpr auto make_zip = "make ZIP files";
constexpr auto make_htx = "make HTX books";
constexpr auto make_pics = "make PICS files";
constexpr auto make_encoded = "make encoded files";

/// Continues with the wizard's steps after the choice of a kind; without any, the wizard closes.
void go_on_creating(Context& context, const std::string& what) {
    if (context.routes.create_archive) {
        context.routes.create_archive();
        return;
    }
    say_not_yet(context.platform, what);
    hide_create_panels(context.windows.load<swit>());
}

void choose_zip(Context& context) {
    auto& w = context.windows.load<swit>();
    w.Label2.text = "Creating a new ZIP file";
    w.Label5.text = w.Dir1.path;
    w.Frame1.visible = false;
    go_on_creating(context, make_zip);
}

void show_kinds(swit& w, const std::string& first, const std::string& second, const std::string& third,
                const std::string& fourth) {
    w.Option2(0).caption = first;
    w.Option2(1).caption = second;
    w.Option2(2).caption = third;
    w.Option2(4).caption = fourth;
    w.Option2.for_each([](int, controls::Choice& choice) { choice.chosen = false; });
    w.Option4.chosen = false;
    w.Frame2.visible = true;
}

void choose_pages_or_pictures(swit& w) {
    w.Label2.text = "Creating an HTX multi-page file";
    show_kinds(w, "Make an HTX of misc. files", "Make a PICS file from pictures only",
               "Make an HTX file from pictures only", "Explain to me these 3 options");
}

void choose_encoded(swit& w) {
    w.Label2.text.clear();
    w.Opti(5).width = encoded_choice_width;
    show_kinds(w, "Create a UUE encoded file", "Create a MIME encoded file", "Create an XXEncoded file",
               "Create a yEncoded file");
}

void leave_wizard(swit& w) {
    w.Label5.text.clear();
    hide_create_panels(w);
}

/// Returns true if the kinds shown are those of pages and pictures, not those of encoded files.
bool shows_pages_and_pictures(const swit& w) {
    return w.Option2(2).caption.ends_with(" only");
}

void choose_encoding(Context& context, int index) {
    auto& w = context.windows.load<swit>();
    const std::string caption = w.Option2(index).caption;
    hide_create_panels(w);
    if (context.routes.open_encoder) {
        context.routes.open_encoder(caption);
    } else {
        say_not_yet(context.platform, make_encoded);
    }
}

void choose_misc_files(Context& context) {
    auto& w = context.windows.load<swit>();
    w.Label5.text = w.Dir1.path;
    w.Frame1.visible = w.Frame2.visible = false;
    go_on_creating(context, make_htx);
}

void make_of_pictures(Context& context, const Routes::MakeOfPictures& make, const std::string& what) {
    if (make) return make({});
    say_not_yet(context.platform, what);
}

void choose_kind(Context& context, int index) {
    auto& w = context.windows.load<swit>();
    if (!shows_pages_and_pictures(w)) {
        choose_encoding(context, index);
        return;
    }
    if (index == 0) choose_misc_files(context);
    if (index == 1) {
        hide_create_panels(w);
        make_of_pictures(context, context.routes.make_pics_file, make_pics);
    }
    if (index == 2) {
        hide_create_panels(w);
        make_of_pictures(context, context.routes.make_picture_book, make_htx);
    }
    if (index == 4) say_all(context.platform, book_and_pics_texts());
}

void enter_directory(Context& context) {
    auto& w = context.windows.load<swit>();
    files::change_directory(w.Dir1.path);
    w.Label5.text = w.Dir1.path;
    context.session.WorkDir = w.Dir1.path;
}

}  // namespace

void open_create_wizard(Context& context) {
    auto& w = context.windows.load<swit>();
    w.Label2.text.clear();
    w.Frame1.visible = true;
    w.Label4.text = "Step One - Select a directory to create the new ZIP file in";
    show_create_step(w, CreateStep::directory);
    w.Dir1.path = in_parent_directory(context.session, "zip-htx directory");
    w.Drive1.drive = files::drive_of(w.Dir1.path, files::drives());
    files::change_directory(w.Dir1.path);
    w.Picture4.width = w.Picture1.width;
    w.Picture4.height = w.Picture1.height;
    w.Picture4.visible = true;
    w.Timer2.enabled = false;
}

void connect_create_panels(Context& context) {
    auto& w = context.windows.load<swit>();
    w.Opti(1).click = [&context] { choose_zip(context); };
    w.Opti(2).click = [&w] { choose_pages_or_pictures(w); };
    w.Opti(5).click = [&w] { choose_encoded(w); };
    w.Opti(3).click = [&context] { say_all(context.platform, kinds_of_files_texts()); };
    w.Opti(4).click = [&w] { leave_wizard(w); };
    w.Option2.for_each([&](int index, controls::Choice& choice) {
        choice.click = [&context, index] { choose_kind(context, index); };
    });
    w.Option4.click = [&w] { hide_create_panels(w); };
    w.Command1.click = [&context] {
        if (context.routes.next_creating) {
            context.routes.next_creating();
        } else {
            go_on_creating(context, make_zip);
        }
    };
    w.Dir1.change = [&context] { enter_directory(context); };
    w.Drive1.change = [&context, &w] {
        w.Dir1.path = w.Drive1.drive;
        enter_directory(context);
    };
}

}  // namespace quill::shell
