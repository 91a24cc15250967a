#include "decoder/run_summary.h"

#include "files/path.h"
#include "shell/main_window.h"
#include "text/count.h"

#include <algorithm>
#include <array>
#include <string_view>

namespace quill::decoder {
namespace {

/// What became of a file, in the order of the summary.
enum class Fate : std::uint8_t { saved, already_there, damaged, incomplete, not_saved };
constexpr std::array<std::string_view, 5> words = {"saved", "already there", "damaged", "incomplete", "not saved"};

Fate fate_of(const codec::Recovered& file) {
    if (file.path.empty() || file.outcome.verdict == codec::Verdict::refused) return Fate::not_saved;
    if (file.outcome.verdict == codec::Verdict::damaged) return Fate::damaged;
    if (file.outcome.verdict == codec::Verdict::incomplete) return Fate::incomplete;
    return file.already_there ? Fate::already_there : Fate::saved;
}

}  // namespace

std::string outcome_words(std::span<const codec::Recovered> files) {
    std::string out;
    for (std::size_t i = 0; i < words.size(); ++i) {
        const auto fate = static_cast<Fate>(i);
        const auto count =
            std::count_if(files.begin(), files.end(), [&](const auto& file) { return fate_of(file) == fate; });
        if (count == 0) continue;
        if (!out.empty()) out += ", ";
        out.append(text::grouped(static_cast<std::uint64_t>(count))).append(" ").append(words.at(i));
    }
    return out;
}

void head_results(shell::Context& context, std::span<const codec::Recovered> files) {
    auto& w = context.windows.load<shell::swit>();
    const std::string& input = context.session.EncodedPath;
    w.run_title.text = files::name_of(input) + ": " + outcome_words(files);
    w.run_folder.text = files::dir_of(input);
}

void open_results_folder(shell::Context& context) {
    const std::string& folder = context.windows.load<shell::swit>().run_folder.text;
    if (context.platform.opener().open_with_default(folder)) return;
    context.platform.warn("No program could be started that shows the folder " + folder + ".");
}

}  // namespace quill::decoder
