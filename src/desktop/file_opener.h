#pragma once

#include "platform/platform.h"

#include <functional>
#include <string>

namespace quill::desktop {

/// Passes files and programs to the desktop.
class FileOpener final : public platform::Opener {
  public:
    /// Never a program: refuses a file that the desktop would run and informs the user through `say`.
    bool open_with_default(const std::string& path) override;
    bool is_program(const std::string& path) override;
    bool start(const std::string& program, const std::vector<std::string>& arguments,
               const std::string& directory) override;
    bool edit_text(const std::string& path) override;
    bool move_to_trash(const std::string& path) override;

    std::function<void(const std::string& text)> say;
    std::function<void(const std::string& path)> edit_here;   ///< opens a text in our own window
    std::function<void(const std::string& path)> show_guide;  ///< opens the user guide in our own window
    std::string guide;                                        ///< path of the user guide; empty for none
};

}  // namespace quill::desktop
