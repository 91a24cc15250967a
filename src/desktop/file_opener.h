#pragma once

#include "platform/platform.h"

#include <functional>
#include <string>

namespace quill::desktop {

/// Hands files and programs to the desktop.
class FileOpener final : public platform::Opener {
  public:
    /// Never a program: a file that the desktop would run is refused with a word to the user through `say`.
    bool open_with_default(const std::string& path) override;
    bool start(const std::string& program, const std::vector<std::string>& arguments,
               const std::string& directory) override;
    bool edit_text(const std::string& path) override;
    bool move_to_trash(const std::string& path) override;

    std::function<void(const std::string& text)> say;
    std::function<void(const std::string& path)> edit_here;   ///< opens a text in a window of our own
    std::function<void(const std::string& path)> show_guide;  ///< opens the user guide in a window of our own
    std::string guide;                                        ///< path of the user guide; empty for none
};

}  // namespace quill::desktop
