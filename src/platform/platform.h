#pragma once

#include "controls/control.h"

#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <utility>
#include <vector>

/// The program's interface to the machine. The desktop implements it with real dialogs and programs, a test with a
/// script.
namespace quill::platform {

class Pictures;

/// Thrown by Platform::end_process and caught only by the event loop, `main` and tests: nothing after it runs,
/// destructors do.
struct ProcessEnd {};

/// Thrown by Platform::end_session. Where nobody starts another session, it is the end of the process.
struct SessionEnd : ProcessEnd {
    std::string said;  ///< one sentence: what happened
    std::string file;  ///< the file that the next session offers; empty for none
};

/// A question with the buttons Yes and No.
struct Question {
    std::string text = {};
    std::string title = {};
    bool no_is_default = false;
    bool question_mark = false;
};

/// What to do if a new file would get the name of an existing one.
enum class Collision : std::uint8_t {
    replace,    ///< the new file replaces the old one
    keep_both,  ///< the new file gets a free name
    cancel      ///< no new file is made
};

/// A question with custom answers.
struct Choices {
    std::string text = {};
    std::string title = {};
    std::vector<std::string> answers = {};  ///< captions of the buttons; `&` precedes the shortcut letter
    std::size_t default_answer = 0;         ///< index in `answers`
    std::size_t escape_answer = 0;          ///< also used if the box is closed
};

/// A request for one line of text.
struct Prompt {
    std::string text = {};
    std::string title = {};
    std::string default_answer = {};
    bool secret = false;        ///< a password: not shown while typed
    bool is_file_name = false;  ///< typing replaces the default answer up to its extension
};

/// A request for one existing file.
struct FileRequest {
    std::string title = {};
    std::string directory = {};    ///< initial directory; if it does not exist, the user's own
    std::string patterns = "*.*";  ///< "*.zip;*.htx"
};

/// Boxes that block the program until the user has answered.
class Dialogs {
  public:
    virtual ~Dialogs() = default;
    virtual void message(const std::string& text, const std::string& title) = 0;
    /// A message that something went wrong.
    virtual void warn(const std::string& text, const std::string& title) = 0;
    /// True for Yes; closing the box is a No.
    virtual bool ask(const Question& question) = 0;
    /// Asks about the existing file at `path`; closing the box means Cancel.
    virtual Collision ask_about_existing(const std::string& path) = 0;
    /// Returns the chosen answer as its index in `answers`.
    virtual std::size_t choose(const Choices& choices) = 0;
    /// Returns the typed line; empty for Cancel.
    virtual std::string input(const Prompt& prompt) = 0;
    /// Returns the absolute path of the chosen file; empty for Cancel.
    virtual std::string choose_file(const FileRequest& request) = 0;
    /// Returns the chosen color, starting from `current`; nullopt for Cancel.
    virtual std::optional<controls::Colour> choose_colour(const controls::Colour& current) = 0;
};

/// The desktop's actions on files: other programs, the trash. None of these waits for a program's end or runs the file
/// itself.
class Opener {
  public:
    virtual ~Opener() = default;
    /// Opens `path` with the desktop's default program for its type. Returns false if none could be started.
    virtual bool open_with_default(const std::string& path) = 0;
    /// Returns true if the desktop would run `path` instead of showing it: open_with_default refuses it and says so.
    virtual bool is_program(const std::string& path) = 0;
    /// Starts `program` with `arguments`, in `directory` (empty: the current one). Returns false if it can't be
    /// started. A bare name is searched for beside the running program first, then on the search path.
    virtual bool start(const std::string& program, const std::vector<std::string>& arguments,
                       const std::string& directory) = 0;
    /// Opens `path` in the user's text editor, or in the program's own small one.
    virtual bool edit_text(const std::string& path) = 0;
    /// Moves the file to the user's trash, from which it can be restored. Returns false if it is still in its place.
    virtual bool move_to_trash(const std::string& path) = 0;
};

/// How an awaited program ended.
enum class ProgramEnd : std::uint8_t {
    exited,       ///< by itself
    killed,       ///< by a signal
    stopped,      ///< because the caller stopped it
    not_started,  ///< it never ran
};

struct ProgramResult {
    ProgramEnd end = ProgramEnd::not_started;
    int status = 0;  ///< its exit status, if it exited
};

/// Programs to wait for.
class Programs {
  public:
    virtual ~Programs() = default;
    /// Returns the path from which the bare name `program` would be started; empty if it is not installed.
    virtual std::string find(const std::string& program) = 0;
    /// Starts the executable at `path` and waits for its end, with its input and output discarded. Calls `goes_on` many
    /// times a second; if it returns false, ends the program and those that it started.
    virtual ProgramResult run(const std::string& path, const std::vector<std::string>& arguments,
                              const std::function<bool()>& goes_on) = 0;
};

/// Devices that play sound and films.
class Media {
  public:
    virtual ~Media() = default;
    /// Sends a command such as "status NAME mode". Returns the reply, or the text of the error.
    virtual std::string command(const std::string& command) = 0;
};

/// Facts of the machine that do not change during a run.
class Machine {
  public:
    virtual ~Machine() = default;
    virtual std::string user_name() const = 0;
    /// Returns the user's own directory, below which favorites may be; empty if there is none.
    virtual std::string home_directory() const = 0;
    /// Returns the directory of the system's own files; nothing is ever written there.
    virtual std::string system_directory() const = 0;
    /// Returns the path of the installed user guide; empty if it is not installed.
    virtual std::string user_guide() const = 0;
    /// Returns true if the theme-sizing menu item suits the desktop's window frames.
    virtual bool has_theme_sizing() const = 0;
    /// Return the size of the screen's working area, in twips.
    virtual int screen_width() const = 0;
    virtual int screen_height() const = 0;
    /// Returns the twips from one of the screen's own pixels to the next: 15, or 7.5 if each logical pixel is two of
    /// them.
    virtual double twips_per_pixel() const = 0;
    /// Returns a whole number from 0 to `bound` - 1.
    virtual int random(int bound) = 0;
};

/// Shows a window's state while an action is still running.
class Display {
  public:
    virtual ~Display() = default;
    /// Redraws the changed parts of `window`. Cheap enough to call often.
    virtual void repaint(controls::Window& window) = 0;
};

/// All services together, passed by reference to their users.
class Platform {
  public:
    virtual ~Platform() = default;
    virtual Dialogs& dialogs() = 0;
    virtual Opener& opener() = 0;
    virtual Programs& programs() = 0;
    virtual Media& media() = 0;
    virtual Machine& machine() = 0;
    virtual Display& display() = 0;
    virtual Pictures& pictures() = 0;

    /// Ends the process, even if windows are open.
    [[noreturn]] void end_process() { throw ProcessEnd{}; }

    /// Ends the work on an input, with all open windows. The desktop starts a new session with a fresh main window that
    /// shows `said` and offers `file`.
    [[noreturn]] void end_session(std::string said, std::string file = {}) {
        throw SessionEnd{{}, std::move(said), std::move(file)};
    }

    void message(const std::string& text, const std::string& title = {}) { dialogs().message(text, title); }
    void warn(const std::string& text, const std::string& title = {}) { dialogs().warn(text, title); }
    bool ask(const Question& question) { return dialogs().ask(question); }
    Collision ask_about_existing(const std::string& path) { return dialogs().ask_about_existing(path); }
    std::size_t choose(const Choices& choices) { return dialogs().choose(choices); }
    std::string input(const Prompt& prompt) { return dialogs().input(prompt); }
    std::string choose_file(const FileRequest& request) { return dialogs().choose_file(request); }
    std::optional<controls::Colour> choose_colour(const controls::Colour& current) {
        return dialogs().choose_colour(current);
    }
    void repaint(controls::Window& window) { display().repaint(window); }
};

}  // namespace quill::platform
