#include "shell/main_window.h"

namespace quill::shell {
namespace {

constexpr auto program_caption = "Quillbright Pro 2012";

constexpr controls::Colour option_colour = {198, 208, 236};

void set_option_captions(swit& w) {
    w.Label1.text = "Options:";
    w.stop.caption = "Stop";
    w.Label8.text = "Quillbright Pro";
    w.Label15(0).text = "Gets the attachments out of saved mails and newsgroup posts";
    w.Label15(1).text = "Opens and makes ZIP files, HTX books and PICS picture files";
    w.apt(3).text = "View contents of the file";
    w.apt(4).text = "Help";
    w.apt(5).text = "Cancel";
    w.apt(6).visible = w.opt(6).visible = false;
    w.opt.for_each([](int, controls::Label& label) { label.colour = option_colour; });
    fremy(w);
}

void set_results_captions(swit& w) {
    w.Label7.text = "You can double click on a file above to run/load it or click below to end.";
    w.open_folder.caption = "Open folder";
    w.decode_another.caption = "Decode another...";
    w.Command5.caption = "Rename";
    w.Command7.caption = "Erase file";
    w.Command8.caption = "Virus check file";
    w.pictures.caption = "Show all pictures";
    w.pictures.visible = false;
    w.Command6.caption = "Help";
    w.Command4.caption = "Exit";
}

void set_create_captions(swit& w) {
    w.Opti(1).caption = "Create a regular ZIP file";
    w.Opti(5).caption = "Create an encoded file (mim,etc.)";
    w.Opti(4).caption = "Cancel";
    w.Option4.caption = "Cancel";
    w.Command1.caption = "&Next >";
    w.back.caption = "< &Back";
    w.Command2.caption = "Cancel";
    w.Command3.caption = "Add to this list";
    w.open_made.caption = "&Open it";
    w.show_made.caption = "&Show it in its folder";
    w.Label6.text = "Name of file:";
    w.Label9.text = "Password?";
    w.Label10.text = "(Note: if you set a password you'll need to know it to open it)";
    w.old_protection.caption = "Old programs can open it, too (weaker than AES-256)";
    w.Label11.text = "Password is optional, leaving it blank is o.k.";
    w.Check1.caption = "Keep paths";
    show_create_step(w, CreateStep::directory);
}

/// The controls shown in each step.
struct StepControls {
    bool directory, name, files, done, can_go_back;
};

constexpr StepControls controls_of(CreateStep step) {
    switch (step) {
        case CreateStep::directory:
            return {true, false, false, false, true};
        case CreateStep::name:
            return {false, true, false, false, true};
        case CreateStep::files:
            return {false, false, true, false, true};
        case CreateStep::compressing:
            return {};
        case CreateStep::done:
            return {false, false, false, true, false};
    }
    return {};
}

void set_menu_captions(swit& w) {
    w.fifi.caption = "File";
    w.mpics.caption =
        "Open a picture (Jpeg, Bmp, etc) or a set of pictures (.PICS file) into the built-in multi-viewer";
    w.ofpl.caption = "Open a Favorite Pictures List into the built-in multi-viewer";
    w.exi.caption = "E&xit this program";
    w.tutu.caption = "&Tutorial";
    w.intro.caption = "Introduction to this progam";
    w.huse.caption = "How to use this program";
    w.xpmen.caption = "Theme";
    w.xpth.caption = "Use WinXP theme sizing (WinXP theme users click if not checked)";
    w.hel.caption = "About..";
    w.mkzipdef.caption = "Make this program the default program for ZIP files";
    w.reged.caption = "Add/edit default settings for other types of files or programs";
}

}  // namespace

swit::swit() {
    Picture2.visible = false;
    Picture4.visible = false;
    Frame2.visible = false;
    Picture5.visible = doing.visible = stop.visible = false;
    Option1.visible = false;
    File2.visible = File3.visible = List1.visible = List2.visible = List4.visible = Text1.visible = false;

    constexpr int progress_width = 5055;
    Picture5.width = Picture6.width = progress_width;
    Timer2.interval = 10;
    Timer22.interval = 3000;

    set_option_captions(*this);
    set_results_captions(*this);
    set_create_captions(*this);
    set_menu_captions(*this);
    set_idle_texts(*this);
}

void show_idle_captions(swit& w) {
    w.apt(1).text = "Select/Open/View a file";
    w.apt(2).text = "Create compressed or encoded file";
}

void set_idle_texts(swit& w) {
    w.Opti(2).caption = "Create a PICS or HTX file of pictures and/or html documents";
    w.Opti(3).caption = "Explain to me these 3 options";
    w.Opti(5).visible = true;
    w.Label15(0).visible = w.Label15(1).visible = true;
    show_idle_captions(w);
    w.apt(3).visible = w.opt(3).visible = false;
    w.Label3.text.clear();
    w.caption = program_caption;
    w.ope.caption = "Open an encoded or compressed file";
    w.another.caption = "Choose another file...";
    w.crzip.caption = "Create a new encoded or compressed file, book, or picture book";
    w.abzip.caption = "About Quillbright Pro 2012...";
    w.rdhlp.caption = "Help for Quillbright Pro 2012";
}

void show_file_captions(swit& w, const std::string& name) {
    w.apt(1).text = "Decode/open " + name;
    w.apt(2).text = "Virus Scan " + name;
    w.apt(3).text = "View contents of the file";
}

void fremy(swit& w) {
    w.opt.for_each([&](int i, const controls::Label& label) { w.apt(i).colour = label.colour; });
}

void show_create_step(swit& w, CreateStep step) {
    const StepControls shown = controls_of(step);
    w.Dir1.visible = w.Drive1.visible = w.Label5.visible = shown.directory;
    w.Label6.visible = w.Text2.visible = w.Label9.visible = w.Text3.visible = shown.name;
    w.Label10.visible = w.Label11.visible = w.old_protection.visible = shown.name;
    w.List1.visible = w.Command3.visible = w.Check1.visible = w.Label12.visible = shown.files;
    w.open_made.visible = w.show_made.visible = shown.done;
    w.back.visible = shown.can_go_back;
    w.Command1.visible = step != CreateStep::compressing;
    w.Command2.visible = step != CreateStep::compressing && step != CreateStep::done;
    w.Command1.caption = step == CreateStep::done ? "&Finish" : "&Next >";
}

void hide_create_panels(swit& w) {
    w.Picture4.visible = w.Frame1.visible = w.Frame2.visible = false;
    w.Timer2.enabled = true;
}

}  // namespace quill::shell
