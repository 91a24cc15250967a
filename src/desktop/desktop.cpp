#include "desktop/desktop.h"

#include "decoder/connect.h"
#include "desktop/about_view.h"
#include "desktop/archive_view.h"
#include "desktop/book_view.h"
#include "desktop/chooser_view.h"
#include "desktop/contents_view.h"
#include "desktop/guide_window.h"
#include "desktop/main_window_view.h"
#include "desktop/naming_view.h"
#include "desktop/picture_wizard_view.h"
#include "desktop/repair_view.h"
#include "desktop/text_editor.h"
#include "desktop/viewer/column_view.h"
#include "desktop/viewer/frame_view.h"
#include "desktop/viewer/open_pictures_view.h"
#include "desktop/viewer/picture_view.h"
#include "desktop/viewer/pictures_window_view.h"
#include "encoder/chooser_routes.h"
#include "htx/making/create_wizard.h"
#include "htx/open_book.h"
#include "shell/command_line.h"
#include "shell/select_file.h"
#include "shell/startup.h"
#include "viewer/connect.h"

#include <QApplication>
#include <QWidget>

namespace quill::desktop {
namespace {

void raise_windows() {
    for (QWidget* window : QApplication::topLevelWidgets()) {
        if (!window->isVisible()) continue;
        window->setWindowState(window->windowState() & ~Qt::WindowMinimized);
        window->raise();
        window->activateWindow();
    }
}

}  // namespace

Desktop::Desktop(EventLoop& events) : events_(events), views_(windows_, events), platform_(events, views_) {
    add_views();
    open_own_windows();
    events_.after_event = [this](bool) { views_.sync_all(); };
    events_.failed = [this](const std::string& reason) {
        events_.hand_in([this, reason] {
            platform_.message("Something went wrong, and the last step was not finished: " + reason + ".");
        });
    };
}

Desktop::~Desktop() {
    events_.after_event = {};
    events_.failed = {};
    views_.close_all();
    windows_.close_all();  // before the machine that they use
}

void Desktop::add_views() {
    views_.add<shell::swit, MainWindowView>();
    views_.add<shell::AboutBox, AboutView>();
    views_.add<decoder::Form3, RepairView>();
    views_.add<decoder::Form4, NamingView>();
    views_.add<encoder::cmdg, ChooserView>();
    views_.add<viewer::SavPic, PicturesWindowView>();
    views_.add<viewer::frmMDI, FrameView>(desk_);
    views_.add<viewer::frmPic, PictureView>(desk_);
    views_.add<viewer::tittwo, ColumnView>(desk_);
    views_.add<viewer::frmOpen, OpenPicturesView>(desk_);
    views_.add<zip::Form1, ContentsView>();
    views_.add<zip::arcview, ArchiveWindowView>();
    views_.add<htx::Form7, BookView>();
    views_.add<htx::HtxWiz, PictureWizardView>();
}

void Desktop::open_own_windows() {
    platform_.opener().guide = platform_.machine().user_guide();
    platform_.opener().show_guide = show_guide;
    platform_.opener().edit_here = edit_in_window;
}

void Desktop::provide_routes() {
    decoder::connect_decoder(context_);
    encoder::provide_chooser(context_);
    viewer::provide_viewer(context_);
    zip::provide_contents(context_, archives_);
    zip::provide_archive_window(context_, archives_);
    htx::provide_create_wizard(context_);
    htx::provide_picture_wizard(context_);
    htx::provide_reader(context_, archives_);
}

void Desktop::accept_dropped_files() {
    auto* main = static_cast<MainWindowView*>(views_.view_of(windows_.load<shell::swit>()));
    if (main == nullptr) return;
    main->use_pictures(platform_.pictures());
    main->dropped = [this](const std::string& path) {
        if (shell::names_a_file(path)) shell::offer_file(context_, path);
    };
    main->files_dropped = [this](const std::vector<std::string>& paths) { htx::add_to_wizard(context_, paths); };
}

void Desktop::start_again(const platform::SessionEnd& last) {
    start({});
    events_.hand_in([&] {
        if (!last.file.empty()) shell::offer_file(context_, last.file);
        windows_.load<shell::swit>().Label3.text = last.said;
    });
}

void Desktop::start(const std::string& command_line) {
    events_.hand_in([&] {
        session_.CommandLine = command_line;
        provide_routes();
        shell::start(context_);
    });
    if (!events_.ended()) accept_dropped_files();
}

void Desktop::receive_later_starts() {
    if (events_.ended()) return;
    instance_ = std::make_unique<RunningInstance>(Reception{
        .is_free = [this] { return events_.idle() && !events_.ended() && shell::awaits_file(context_); },
        .start_again =
            [this](const std::string& line) { events_.hand_in([&] { shell::start_again(context_, line); }); },
        .raise = raise_windows,
        .start_apart = start_apart,
    });
}

}  // namespace quill::desktop
