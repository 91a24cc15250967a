#include "htx/picture_wizard/picture_wizard.h"

#include "htx/picture_wizard/steps.h"

#include <string_view>
#include <utility>

namespace quill::htx {
namespace {

constexpr int first_width = 11400, first_height = 8400;  // twips

constexpr auto book_welcome = "Welcome to the HTX picture book maker";
constexpr auto album_welcome = "Welcome to the PICS multiple picture file maker";
constexpr auto about_books =
    "    An HTX picture book shows your pictures page by page, each with a title and, if you like, a caption. You need "
    "not know how web pages are made: choose the pictures, type the words, and put the pages in order.\n\n"
    "Your own pictures stay where they are. The book is one file, which opens with this program, and anywhere else "
    "as a ZIP file of web pages.";
constexpr auto about_albums =
    "    Though HTX files can be picture albums as well as books, a PICS file suits pictures without text better: it "
    "keeps them all in one file just as they are, opens at once, and shows them as a row of small pictures.\n\n"
    "Your own pictures stay where they are.";

constexpr std::string_view heading_of(WizardStep step, bool album) {
    switch (step) {
        case WizardStep::welcome:
            return "";
        case WizardStep::pictures:
            return "Step One - Selecting the pictures";
        case WizardStep::letters:
            return "Step Two - Letter sizes and colors";
        case WizardStep::titles:
            return "Step Three - Adding Titles and Captions";
        case WizardStep::order:
            return album ? "Step Two - Setting the pictures order" : "Step Four - Setting the picture page order";
        case WizardStep::saving:
            return album ? "Step Three - Creating the PICS file" : "Step Five - Creating the HTX / HTML files";
    }
    return "";
}

/// Returns the controls that only this step shows.
std::vector<controls::Control*> controls_of(HtxWiz& w, WizardStep step) {
    switch (step) {
        case WizardStep::welcome:
            return {&w.Label1, &w.Label2, &w.Command1};
        case WizardStep::pictures:
            return {&w.other_kinds, &w.add, &w.add_all, &w.reset, &w.List2, &w.chosen_count};
        case WizardStep::letters:
            return {&w.Text1,  &w.Label12,    &w.larger,     &w.smaller,      &w.bold,
                    &w.italic, &w.background, &w.foreground, &w.reset_letters};
        case WizardStep::titles:
            return {&w.Label6,     &w.title_heading, &w.Text2,        &w.caption_heading, &w.Text3,
                    &w.Option1(0), &w.Option1(1),    &w.next_picture, &w.why_titles,      &w.why_small};
        case WizardStep::order:
            return {&w.original_order, &w.List3,        &w.new_order, &w.List4,           &w.put,
                    &w.clear_order,    &w.how_to_order, &w.Check1,    &w.about_thumbnails};
        case WizardStep::saving:
            return {&w.Label11, &w.Text5,      &w.directory_heading, &w.Text6,     &w.password_heading,
                    &w.Text4,   &w.Option2(0), &w.Option2(1),        &w.index_page};
    }
    return {};
}

constexpr WizardStep all_steps[] = {WizardStep::welcome, WizardStep::pictures, WizardStep::letters,
                                    WizardStep::titles,  WizardStep::order,    WizardStep::saving};

void set_captions(HtxWiz& w) {
    w.Command1.caption = w.Command4.caption = "Next  >";
    w.Command7.caption = "<  Back";
    w.Command5.caption = "Cancel";
    w.other_kinds.caption = "List PNG and WebP pictures too";
    w.add.caption = "<--  Add selected files on left to the list  ^";
    w.add_all.caption = "<--    Add all files on the left to the list    ^";
    w.reset.caption = "Reset (clear) the list of pictures to add";
    w.larger.caption = "Make the letters larger";
    w.smaller.caption = "Make the letters smaller";
    w.background.caption = "Change background color";
    w.foreground.caption = "Change font color";
    w.reset_letters.caption = "Reset";
    w.Text1.text = "This is how the captions of your pictures will look.";
    w.title_heading.text = "Title of this page";
    w.caption_heading.text = "Caption of the picture";
    w.Option1(0).caption = "Caption above picture";
    w.Option1(1).caption = "Caption below picture";
    w.next_picture.caption = "Next Picture  >";
    w.why_titles.caption = "Why you should add Titles and Captions";
    w.why_small.caption = "Why your pictures are not really resized";
    w.original_order.text = "Original order:";
    w.new_order.text = "New Order:";
    w.put.caption = "Put them into the new order  >";
    w.clear_order.caption = "Clear New Order list";
    w.how_to_order.caption = "How to change the order";
    w.Check1.caption = "Create separate thumbnails";
    w.about_thumbnails.caption = "About the separate thumbnails option";
    w.directory_heading.text = "Directory:";
    w.password_heading.text = "(Optonal) Leave blank or type a  Password  below";
    w.Option2(0).caption = "Create only the HTX file (Recommended)";
    w.Option2(1).caption = "Create the HTX file and keep the extra HTML files and make extra copies of pictures";
    w.index_page.caption = "Begin the book with a page of all pictures in small";
    w.stop.caption = "Stop";
}

/// Continues if the step allows it.
void next(HtxWiz& w) {
    switch (w.step) {
        case WizardStep::welcome:
            return enter_pictures(w);
        case WizardStep::pictures:
            return w.makes_album() ? enter_order(w) : enter_letters(w);
        case WizardStep::letters:
            return enter_titles(w);
        case WizardStep::titles:
            return record_last_picture(w) ? enter_order(w) : void();
        case WizardStep::order:
            return order_is_whole(w) ? enter_saving(w) : void();
        case WizardStep::saving:
            return save(w);
    }
}

void go_back(HtxWiz& w) {
    switch (w.step) {
        case WizardStep::letters:
            return enter_pictures(w);
        case WizardStep::titles:
            return enter_letters(w);
        case WizardStep::order:
            return enter_titles(w);
        case WizardStep::saving:
            w.Command4.enabled = true;
            w.shown_picture.clear();
            return show_step(w, WizardStep::order);
        case WizardStep::welcome:
        case WizardStep::pictures:
            return;
    }
}

}  // namespace

void show_step(HtxWiz& w, WizardStep step) {
    w.step = step;
    for (const WizardStep each : all_steps) {
        for (controls::Control* control : controls_of(w, each)) control->visible = each == step;
    }
    const bool album = w.makes_album();
    const bool has_directory = step == WizardStep::pictures || step == WizardStep::saving;
    for (controls::Control* const control :
         {static_cast<controls::Control*>(&w.Drive1), static_cast<controls::Control*>(&w.Dir1),
          static_cast<controls::Control*>(&w.File1)}) {
        control->visible = has_directory;
    }
    if (step == WizardStep::order) w.Check1.visible = w.about_thumbnails.visible = album;
    if (step == WizardStep::saving && album) {
        for (controls::Control* control : controls_of(w, step)) control->visible = false;
        w.Label11.visible = w.Text5.visible = true;
    }
    w.Image1.visible = step == WizardStep::pictures || step == WizardStep::titles || step == WizardStep::order;
    w.Label4.text = heading_of(step, album);
    w.Label4.visible = w.Command4.visible = w.Command5.visible = step != WizardStep::welcome;
    w.Command7.visible = !album && step != WizardStep::welcome && step != WizardStep::pictures;
    w.Command4.caption = step == WizardStep::saving ? "Finish" : "Next  >";
}

HtxWiz::HtxWiz(shell::Context& shared) : context(shared) {
    width = first_width;
    height = first_height;
    for (controls::ListBox* list : {&List1, &List5, &List6}) list->visible = false;
    Label8.visible = doing.visible = bar.visible = bar_done.visible = stop.visible = false;
    bar.width = 3750;
    File1.takes_several = List3.takes_several = true;
    Option1(0).chosen = Option2(0).chosen = true;
    set_captions(*this);
    wire_pictures(*this);
    wire_letters(*this);
    wire_titles(*this);
    wire_order(*this);
    wire_saving(*this);
    Command1.click = Command4.click = [this] { next(*this); };
    Command7.click = [this] { go_back(*this); };
    close = Command5.click = [this] { context.windows.unload<HtxWiz>(); };
}

HtxWiz::~HtxWiz() {
    if (thumbnails.ticket != 0) context.platform.pictures().cancel(thumbnails.ticket);
}

void show_picture_wizard(shell::Context& context, const std::string& caption,
                         const std::vector<std::string>& pictures) {
    context.windows.unload<HtxWiz>();
    auto& w = context.windows.load<HtxWiz>(context);
    w.caption = caption;
    w.Label1.text = w.makes_album() ? album_welcome : book_welcome;
    w.Label2.text = w.makes_album() ? about_albums : about_books;
    show_step(w, WizardStep::welcome);
    add_pictures(w, pictures);
    w.visible = true;
}

void provide_picture_wizard(shell::Context& context) {
    context.routes.make_picture_book = [&context](const std::vector<std::string>& pictures) {
        show_picture_wizard(context, book_caption, pictures);
    };
    context.routes.make_pics_file = [&context](const std::vector<std::string>& pictures) {
        show_picture_wizard(context, album_caption, pictures);
    };
}

}  // namespace quill::htx
