#pragma once

#include "controls/control.h"
#include "platform/platform.h"
#include "support/fake_pictures.h"

#include <cstddef>
#include <deque>
#include <functional>
#include <map>
#include <optional>
#include <random>
#include <set>
#include <string>
#include <vector>

namespace quill::tests {

/// A machine without a screen. Dialogs are answered from a script, in order; messages, opened paths and started
/// programs are recorded.
///
/// A dialog that is not next in the script fails the test and gets the answer No, or none. A script with unused entries
/// when the platform is destroyed fails it too.
class ScriptedPlatform final : public platform::Platform,
                               private platform::Dialogs,
                               private platform::Opener,
                               private platform::Programs,
                               private platform::Media,
                               private platform::Machine,
                               private platform::Display {
  public:
    /// A started program: its path, arguments and directory.
    struct Start {
        std::string program;
        std::vector<std::string> arguments;
        std::string directory;

        bool operator==(const Start&) const = default;
    };

    ScriptedPlatform() = default;
    ~ScriptedPlatform() override;

    // Adds to the script. `part` must occur in the dialog's text (in a file request's title). `meanwhile` runs while
    // the box is open: the action of another program, or a check of a window's state.
    void expect_message(std::string part, controls::Action meanwhile = {});
    void expect_question(std::string part, bool yes, controls::Action meanwhile = {});
    void expect_collision(std::string part, platform::Collision answer, controls::Action meanwhile = {});
    /// `answer`: the caption of the pressed button.
    void expect_choice(std::string part, std::string answer, controls::Action meanwhile = {});
    void expect_input(std::string part, std::string answer, controls::Action meanwhile = {});
    /// `answer`: nullopt for Cancel.
    void expect_colour(std::optional<controls::Colour> answer);
    void expect_file_request(std::string part, std::string answer, controls::Action meanwhile = {});

    /// Returns true if all of the script has been used.
    bool script_is_done() const { return script_.empty(); }

    // The record.
    std::vector<std::string> messages;          ///< texts of the message boxes
    std::vector<platform::Question> questions;  ///< asked with Yes and No
    std::vector<platform::Prompt> prompts;      ///< asked for a line of text
    std::vector<platform::FileRequest> file_requests;
    std::vector<std::string> opened;  ///< paths opened with their default program
    std::vector<Start> started;       ///< programs started
    std::vector<Start> waited_for;    ///< programs started and waited for
    std::vector<std::string> media_commands;
    std::vector<std::string> edited;   ///< paths opened in a text editor
    std::vector<std::string> trashed;  ///< paths moved to the trash; their files are deleted
    std::size_t repaints = 0;

    // The machine: its properties, and its failures.
    std::string name_of_user = "ada";
    std::string directory_of_system = "/usr";
    std::string path_of_guide;
    std::string directory_of_user = "/home/ada";
    bool theme_sizing = false;
    int width_of_screen = 1920 * 15;
    int height_of_screen = 1080 * 15;
    bool opening_works = true;
    std::set<std::string> runnable;  ///< files that the desktop would run
    bool starting_works = true;
    bool editing_works = true;
    bool trash_works = true;
    double twips_of_pixel = 15;
    std::map<std::string, std::string> installed;         ///< paths of programs by their names
    std::deque<platform::ProgramResult> program_results;  ///< of the programs waited for; none: not started
    std::string media_reply = "no such device";           ///< to each command
    controls::Action while_waiting;                       ///< runs while a program is waited for
    std::function<int(int bound)> random_number;          ///< replaces the generator of fixed seed
    std::function<void(controls::Window&)> on_repaint;
    FakePictures fake_pictures;  ///< the table of pictures, and the waiting requests

    platform::Dialogs& dialogs() override { return *this; }
    platform::Opener& opener() override { return *this; }
    platform::Programs& programs() override { return *this; }
    platform::Media& media() override { return *this; }
    platform::Machine& machine() override { return *this; }
    platform::Display& display() override { return *this; }
    FakePictures& pictures() override { return fake_pictures; }

  private:
    enum class Kind { message, question, collision, choice, input, file_request, colour };
    struct Step {
        Kind kind;
        std::string part;
        std::string answer;
        bool yes = false;
        controls::Action meanwhile;
        platform::Collision collision = platform::Collision::cancel;
        std::optional<controls::Colour> colour = std::nullopt;
    };

    static std::string describe(Kind kind);
    Step next(Kind kind, const std::string& text);

    void message(const std::string& text, const std::string& title) override;
    void warn(const std::string& text, const std::string& title) override { message(text, title); }
    bool ask(const platform::Question& question) override;
    platform::Collision ask_about_existing(const std::string& path) override;
    std::size_t choose(const platform::Choices& choices) override;
    std::string input(const platform::Prompt& prompt) override;
    std::string choose_file(const platform::FileRequest& request) override;
    std::optional<controls::Colour> choose_colour(const controls::Colour& current) override;
    bool open_with_default(const std::string& path) override;
    bool is_program(const std::string& path) override { return runnable.contains(path); }
    bool start(const std::string& program, const std::vector<std::string>& arguments,
               const std::string& directory) override;
    bool edit_text(const std::string& path) override;
    bool move_to_trash(const std::string& path) override;
    std::string find(const std::string& program) override;
    platform::ProgramResult run(const std::string& path, const std::vector<std::string>& arguments,
                                const std::function<bool()>& goes_on) override;
    std::string command(const std::string& command) override;
    std::string user_name() const override { return name_of_user; }
    std::string home_directory() const override { return directory_of_user; }
    std::string system_directory() const override { return directory_of_system; }
    std::string user_guide() const override { return path_of_guide; }
    bool has_theme_sizing() const override { return theme_sizing; }
    int screen_width() const override { return width_of_screen; }
    int screen_height() const override { return height_of_screen; }
    double twips_per_pixel() const override { return twips_of_pixel; }
    int random(int bound) override;
    void repaint(controls::Window& window) override;

    std::deque<Step> script_;
    std::minstd_rand generator_{1};
};

}  // namespace quill::tests
