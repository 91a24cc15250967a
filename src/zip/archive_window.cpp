#include "zip/archive_window.h"

#include "shell/about_box.h"
#include "shell/main_workflow.h"
#include "zip/archive_actions.h"
#include "zip/archive_document.h"
#include "zip/archive_encryption.h"
#include "zip/archive_leaving.h"
#include "zip/archive_loading.h"
#include "zip/archive_moving.h"
#include "zip/archive_names.h"
#include "zip/archive_panel.h"
#include "zip/archive_reading.h"
#include "zip/archive_rows.h"
#include "zip/archive_saving.h"
#include "zip/media_label.h"

#include <array>

namespace quill::zip {
namespace {

struct ToolRow {
    int index;
    const char* hint;
    void (*act)(arcview&);
};

constexpr std::array<ToolRow, 4> tools = {{
    {1, "Open or play selected program or file", OpenMember},
    {2, "Move all these files to a new directory and exit", mover},
    {3, "Repack the contents of this compressed file and exit", RepackAndExit},
    {4, "Exit without repacking the contents", gogo},
}};

void set_captions(arcview& w) {
    w.stop.caption = "Stop";
    w.Command3.caption = "Create a new directory in current directory folder";
    w.Command4.caption = "Cancel";
    w.opens_folder.caption = "Open the folder afterwards";
    w.fil.caption = "&File";
    w.peo.caption = "&Open";
    w.extract.caption = "&Extract to...";
    w.test.caption = "&Test";
    w.rpnex.caption = "&Repack and exit";
    w.exnrp.caption = "E&xit without repacking";
    w.edi.caption = "&Edit";
    w.undo.caption = "&Undo";
    w.adtozip.caption = "&Add files to ZIP file";
    w.remzip.caption = "&Remove selected file from ZIP";
    w.savzipch.caption = "&Save changes in selected file into ZIP file";
    w.lock.caption = "&Password for added files...";
    w.nam.caption = "&Names";
    w.names_in.for_each([](int i, controls::MenuItem& item) { item.caption = caption_of_names(i); });
    w.names_in(0).checked = true;
    w.hlp.caption = "&Help";
    w.help.caption = "&Help for ZIP Quillbright 2002";
    w.abt.caption = "About Quillbright Pro...";
    w.dvd.caption = "Selected files";
    w.opt.caption = "Open";
    w.exs.caption = "Extract to...";
    w.pictures.caption = "Show all pictures";
    w.mvs.caption = "Move to...";
    w.ads.caption = "Add files to ZIP file";
    w.rrm.caption = "Remove selected file from ZIP";
    w.lod.caption = "Load file into ..";
}

void hide_what_starts_hidden(arcview& w) {
    w.visible = false;
    w.Picture1.visible = w.Picture2.visible = w.Picture9.visible = false;
    w.doing.visible = w.bar.visible = w.stop.visible = false;
    w.Label2.visible = w.Label24.visible = false;  // the path shows the directory, and the list needs no label
    w.Command1.visible = w.Label3.visible = w.progress.visible = w.IDC_ENCRYPTCODE.visible = false;
    w.Image2.for_each([](int, controls::Picture& picture) { picture.visible = false; });
    w.row_state.visible = false;
    w.lodnone.enabled = w.undo.enabled = false;
}

void wire_tools(arcview& w) {
    for (const ToolRow& tool : tools) {
        ToolPicture& picture = w.Image1(tool.index);
        controls::Picture& sunken = w.Image2(tool.index);
        picture.caption = tool.hint;
        picture.hover = sunken.hover = [&w, hint = tool.hint] { w.Label13.text = hint; };
        picture.press = [&sunken] { sunken.visible = true; };
        picture.release = [&sunken] { sunken.visible = false; };
        picture.click = [&w, &sunken, act = tool.act] {
            sunken.visible = false;
            act(w);
        };
    }
    w.Picture9.hover = w.Image1(1).hover;
    w.Picture9.click = [&w] { OpenMember(w); };
    w.Picture1.hover = w.hover = [&w] { w.Label13.text.clear(); };
}

void wire_list(arcview& w) {
    w.List1.change = [&w] {
        show_selected_row(w);
        count_selected(w);
    };
    w.Label21.click = [&w] { toggle_media(w); };
    w.Label21.double_click = [&w] { close_media(w); };
    w.List1.double_click = w.List7.double_click = [&w] { OpenMember(w); };
    w.List7.change = [&w] { select_page_row(w); };
    w.VScroll2.change = [&w] { scroll_page(w); };
    w.watch.tick = [&w] { notice_changes(w); };
}

void wire_panel(arcview& w) {
    w.Drive1.change = [&w] { show_panel_directory(w, w.Drive1.drive); };
    w.Dir1.change = [&w] { show_panel_directory(w, w.Dir1.path); };
    w.Command2.click = [&w] { w.panel_extracts ? extract_files(w) : move_files(w); };
    w.Command3.click = [&w] { make_panel_directory(w); };
    w.take_all.click = w.take_selected.click = [&w] { count_selected(w); };
    w.Command4.click = [&w] { w.Picture2.visible = false; };
}

void wire_menus(arcview& w) {
    w.pictures.click = [&w] { show_member_pictures(w); };
    w.peo.click = w.opt.click = [&w] { OpenMember(w); };
    w.extract.click = [&w] { choose_extraction(w); };
    w.exs.click = [&w] { choose_extraction(w, true); };
    w.mvs.click = [&w] { choose_move(w); };
    w.test.click = [&w] { test_archive(w); };
    w.rpnex.click = [&w] { RepackAndExit(w); };
    w.exnrp.click = [&w] { gogo(w); };
    w.undo.click = [&w] { undo_change(w); };
    w.adtozip.click = w.ads.click = [&w] { zippadd(w); };
    w.remzip.click = w.rrm.click = [&w] { RemoveMember(w); };
    w.savzipch.click = [&w] { SaveChangedFile(w); };
    w.lock.click = [&w] { choose_encryption(w); };
    w.names_in.for_each([&](int i, controls::MenuItem& item) { item.click = [&w, i] { choose_names(w, i); }; });
    w.help.click = [&w] { shell::open_user_guide(w.context); };
    w.abt.click = [&w] { shell::show_about_box(w.context); };
    w.close = [&w] { close_archive_window(w); };
}

}  // namespace

arcview::arcview(shell::Context& shared, NewZIP& operations) : context(shared), archives(operations) {
    constexpr int window_width = 7000, window_height = 5010, bar_width = 3000;  // twips
    constexpr int milliseconds_between_looks = 2000;
    width = window_width;
    height = window_height;
    Label3.text = "1";
    opens_folder.checked = true;
    bar.width = bar_done.width = bar_width;
    List1.takes_several = true;
    watch.interval = milliseconds_between_looks;
    set_captions(*this);
    hide_what_starts_hidden(*this);
    wire_tools(*this);
    wire_list(*this);
    wire_panel(*this);
    wire_menus(*this);
}

void provide_archive_window(shell::Context& context, NewZIP& archives) {
    context.routes.open_archive = [&context, &archives] { load_archive_window(context, archives); };
}

}  // namespace quill::zip
