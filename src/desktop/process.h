#pragma once

#include <string>
#include <vector>

namespace quill::desktop {

/// Returns the path that would start `program`: itself if it has a slash, else the file of that name beside the running
/// program, else on the search path. Empty if there is none that can be executed.
std::string find_program(const std::string& program);

/// The words of a command line, in the form of exec's arguments.
class Arguments {
  public:
    Arguments(const std::string& path, const std::vector<std::string>& arguments);
    Arguments(const Arguments&) = delete;
    Arguments& operator=(const Arguments&) = delete;

    char* const* argv() const { return argv_.data(); }

  private:
    std::vector<std::string> words_;
    std::vector<char*> argv_;  ///< into `words_`, ended by a nullptr
};

/// Starts the executable at `path` in `directory` (empty: the current one) detached: it continues when we end, and
/// nothing has to wait for it. Passes arguments on byte for byte. Returns false if it can't be started.
bool start_detached(const std::string& path, const std::vector<std::string>& arguments, const std::string& directory);

}  // namespace quill::desktop
