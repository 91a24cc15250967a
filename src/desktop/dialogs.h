#pragma once

#include "desktop/event_loop.h"
#include "desktop/views.h"
#include "platform/platform.h"

class QDialog;
class QMessageBox;

namespace quill::desktop {

/// The boxes of the program on the user's desktop. Before one opens, the windows are redrawn; if the process ends while
/// one is open, it throws ProcessEnd.
class BoxDialogs final : public platform::Dialogs {
  public:
    BoxDialogs(EventLoop& events, Views& views);

    void message(const std::string& text, const std::string& title) override;
    void warn(const std::string& text, const std::string& title) override;
    bool ask(const platform::Question& question) override;
    platform::Collision ask_about_existing(const std::string& path) override;
    std::size_t choose(const platform::Choices& choices) override;
    std::string input(const platform::Prompt& prompt) override;
    std::string choose_file(const platform::FileRequest& request) override;
    std::optional<controls::Colour> choose_colour(const controls::Colour& current) override;

  private:
    void show(const std::string& text, const std::string& title, bool is_warning);
    /// Shows `box` and returns what its exec() does.
    int run(QDialog& box);

    EventLoop& events_;
    Views& views_;
};

}  // namespace quill::desktop
