#include "shell/main_workflow.h"

#include "files/directory.h"
#include "files/path.h"
#include "shell/about_box.h"
#include "shell/create_panels.h"
#include "shell/main_window.h"
#include "shell/open_archive.h"
#include "shell/select_file.h"
#include "shell/startup.h"
#include "shell/tutorial.h"
#include "text/ascii.h"

#include <array>
#include <string>

namespace quill::shell {
namespace {

constexpr int encoded_choice_width = 3200;  // twips, at rest

constexpr auto guide_question =
    "    The easiest way to learn how to use this program if you need help is to read the help file. Would you like to "
    "read the help file now?";

/// Returns the colour of the option under the pointer.
controls::Colour hover_colour(int option) {
    static constexpr std::array<std::uint32_t, 4> colours = {0x00FF00, 0xC0C0FF, 0xFFFF00, 0xC0FFFF};
    constexpr std::uint32_t white = 0xFFFFFF;
    const bool own = option >= 1 && option <= static_cast<int>(colours.size());
    return controls::colour_from_bgr(own ? colours[static_cast<std::size_t>(option - 1)] : white);
}

/// Does what every option does first.
void begin_option(swit& w) {
    w.Option1.chosen = true;
    w.Frame2.visible = false;
    w.Opti(5).width = encoded_choice_width;
}

void open_pics_file(Context& context) {
    if (!context.routes.open_pics) {
        say_not_yet(context.platform, "open PICS files");
        return;
    }
    const Session& session = context.session;
    const std::string temp = files::join(session.AppDir, "temp");
    if (const auto names = files::list_files(temp)) {
        for (const std::string& name : *names) {
            const std::string path = files::join(temp, name);
            if (!files::same_file(path, selected_path(session))) files::remove_file(path);
        }
    }
    context.routes.open_pics(selected_path(session));
    auto& w = context.windows.load<swit>();
    show_idle_captions(w);
    w.Label3.text.clear();
}

void decode_selected(Context& context) {
    if (!context.routes.decode) {
        say_not_yet(context.platform, "decode files");
        return;
    }
    std::string path = selected_path(context.session);
    context.routes.decode(path);
}

/// Opens or decodes the selected file, depending on the end of the first option's caption.
void open_selected(Context& context) {
    auto& w = context.windows.load<swit>();
    const std::string ending = text::to_lower(text::last(w.apt(1).text, 4));
    if (ending == ".zip" || ending == ".htx") {
        context.session.WorkDir = w.Text1.text;
        openarchive(context);
    } else if (ending == "pics" || ending == ".pic") {
        open_pics_file(context);
    } else {
        decode_selected(context);
    }
}

std::string chooser_directory(const Session& session) {
    return in_parent_directory(session, "zip-htx directory");
}

void choose_file(Context& context, const std::string& directory) {
    if (context.routes.open_chooser) {
        context.routes.open_chooser(directory);
    } else {
        choose_and_offer_file(context);
    }
}

void close_main_window(Context& context) {
    context.platform.end_process();
}

void connect_options(Context& context) {
    auto& w = context.windows.load<swit>();
    w.opt(1).click = [&context] { option_1(context); };
    w.opt(2).click = [&context] { option_2(context); };
    w.opt(3).click = [&context] { option_3(context); };
    w.opt(4).click = [&context] {
        begin_option(context.windows.load<swit>());
        show_about_box(context);
    };
    w.opt(5).click = [&context] { close_main_window(context); };
    w.apt.for_each([&](int i, controls::Label& label) {
        label.click = [&w, i] { controls::run(w.opt(i).click); };
        label.hover = w.opt(i).hover = [&w, i] {
            fremy(w);
            w.apt(i).colour = hover_colour(i);
        };
    });
    w.hover = w.Picture1.hover = w.Label8.hover = [&w] { fremy(w); };
}

void connect_file_menu(Context& context) {
    auto& w = context.windows.load<swit>();
    w.ope.click = [&context] { option_1(context); };
    w.another.click = [&context] {
        begin_option(context.windows.load<swit>());
        const std::string& directory = context.session.SelectedDir;
        choose_file(context, directory.empty() ? chooser_directory(context.session) : directory);
    };
    w.mpics.click = [&context] {
        files::change_directory(chooser_directory(context.session));
        follow(context.platform, context.routes.open_pictures, "show pictures");
    };
    w.ofpl.click = [&context] { follow(context.platform, context.routes.open_favorites, "show lists of pictures"); };
    w.crzip.click = [&context] { option_2(context); };
    w.exi.click = [&context] { close_main_window(context); };
}

void connect_other_menus(Context& context) {
    auto& w = context.windows.load<swit>();
    w.intro.click = [&context] { say_all(context.platform, introduction_texts()); };
    w.huse.click = [&context] {
        if (context.platform.ask({.text = guide_question})) open_user_guide(context);
    };
    w.xpth.click = [&w] { w.xpth.checked = !w.xpth.checked; };
    w.rdhlp.click = [&context] { open_user_guide(context); };
    w.mkzipdef.click = [&context] {
        follow(context.platform, context.routes.make_zip_default, "become the default program for ZIP files");
    };
    w.reged.click = [&context] {
        follow(context.platform, context.routes.edit_file_types, "change the programs that files are opened with");
    };
    w.abzip.click = [&context] { show_about_box(context); };
}

}  // namespace

void connect_main_window(Context& context) {
    auto& w = context.windows.load<swit>();
    connect_options(context);
    connect_create_panels(context);
    connect_file_menu(context);
    connect_other_menus(context);
    w.Timer2.tick = [&context, &w] { w.stars.tick(context.platform.machine()); };
    w.close = [&context] { close_main_window(context); };
}

void option_1(Context& context) {
    auto& w = context.windows.load<swit>();
    begin_option(w);
    files::change_directory(context.session.AppParentDir);
    if (!w.apt(1).text.starts_with("Selec")) {
        open_selected(context);
    } else {
        choose_file(context, chooser_directory(context.session));
    }
}

void option_2(Context& context) {
    auto& w = context.windows.load<swit>();
    begin_option(w);
    w.Opti.for_each([](int, controls::Choice& choice) { choice.chosen = false; });
    if (w.apt(2).text.starts_with("Virus")) {
        follow(context.platform, context.routes.scan_file, "have files checked for viruses");
    } else {
        open_create_wizard(context);
    }
}

void option_3(Context& context) {
    begin_option(context.windows.load<swit>());
    show_contents(context);
}

void open_user_guide(Context& context) {
    std::string guide = files::join(context.session.AppDir, "qbguide.hlp");
    if (!files::exists(guide)) guide = context.platform.machine().user_guide();
    if (!guide.empty() && context.platform.opener().open_with_default(guide)) return;
    context.platform.warn("The help could not be opened: " +
                          (guide.empty() ? std::string("it is not installed.") : "no program shows " + guide + "."));
}

}  // namespace quill::shell
