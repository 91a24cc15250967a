#pragma once

#include <string>
#include <vector>

namespace quill::desktop {

/// Where `program` would be started from: itself where it has a slash, else the file of that name beside the running
/// program, else on the search path. Empty where there is none that can be executed.
std::string find_program(const std::string& program);

/// The words of a command line, as exec takes them.
class Arguments {
  public:
    Arguments(const std::string& path, const std::vector<std::string>& arguments);
    Arguments(const Arguments&) = delete;
    Arguments& operator=(const Arguments&) = delete;

    char* const* argv() const { return argv_.data(); }

  private:
    std::vector<std::string> words_;
    std::vector<char*> argv_;  ///< into `words_`, and a nullptr
};

/// Starts the executable at `path` in `directory` (empty: the current one) and lets go of it: it goes on when we end,
/// and nothing has to wait for it. Arguments are passed on byte for byte. False where it can't be started.
bool start_detached(const std::string& path, const std::vector<std::string>& arguments, const std::string& directory);

}  // namespace quill::desktop
