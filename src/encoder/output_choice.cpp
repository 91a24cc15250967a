#include "encoder/output_choice.h"

#include "files/directory.h"
#include "files/names.h"
#include "files/path.h"

namespace quill::encoder {

std::optional<OutputChoice> choose_output(platform::Platform& platform, const std::string& wanted) {
    if (!files::exists(wanted)) return OutputChoice{wanted};
    switch (platform.ask_about_existing(wanted)) {
        case platform::Collision::replace:
            return OutputChoice{wanted, files::OnCollision::replace};
        case platform::Collision::keep_both: {
            const std::string directory = files::dir_of(wanted);
            const std::string name = files::unique_name(directory.empty() ? "." : directory, files::name_of(wanted));
            return OutputChoice{files::join(directory, name)};
        }
        case platform::Collision::cancel:
            break;
    }
    return std::nullopt;
}

}  // namespace quill::encoder
