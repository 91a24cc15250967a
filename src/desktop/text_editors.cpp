#include "desktop/text_editors.h"

#include "desktop/process.h"
#include "files/directory.h"
#include "files/path.h"

#include <QProcess>
#include <QStandardPaths>

#include <algorithm>
#include <array>
#include <cstdlib>

namespace quill::desktop {
namespace {

/// Editors that need a terminal, which this program does not provide.
constexpr std::array<std::string_view, 16> terminal_editors = {"ed",    "ex",   "vi",  "vim",        "nvi",  "nvim",
                                                               "view",  "nano", "joe", "jed",        "pico", "mcedit",
                                                               "micro", "ne",   "hx",  "emacsclient"};

constexpr int answer_time = 2000;  // milliseconds for the desktop to answer a question

Command words_of(std::string_view line) {
    Command words;
    for (const QString& word :
         QProcess::splitCommand(QString::fromUtf8(line.data(), static_cast<qsizetype>(line.size())))) {
        words.push_back(word.toStdString());
    }
    return words;
}

std::optional<Command> command_of_variable(const char* variable, const std::string& path) {
    const char* value = std::getenv(variable);
    if (value == nullptr) return std::nullopt;
    Command words = words_of(value);
    if (words.empty()) return std::nullopt;
    const std::string name = files::name_of(words.front());
    if (std::find(terminal_editors.begin(), terminal_editors.end(), name) != terminal_editors.end())
        return std::nullopt;
    words.push_back(path);
    return words;
}

/// Returns the value of `key` in the entry's main group.
std::string_view value_of(std::string_view entry, std::string_view key) {
    bool in_main_group = false;
    while (!entry.empty()) {
        const std::string_view line = entry.substr(0, entry.find('\n'));
        entry.remove_prefix(std::min(line.size() + 1, entry.size()));
        if (line.starts_with('[')) in_main_group = line.starts_with("[Desktop Entry]");
        if (!in_main_group || !line.starts_with(key)) continue;
        const std::string_view rest = line.substr(key.size());
        const std::size_t equals = rest.find_first_not_of(" \t");
        if (equals == std::string_view::npos || rest[equals] != '=') continue;
        const std::size_t begin = rest.find_first_not_of(" \t", equals + 1);
        return begin == std::string_view::npos ? std::string_view() : rest.substr(begin);
    }
    return {};
}

/// Returns the file name of the desktop entry for opening plain text, as reported by the desktop.
QString entry_for_plain_text() {
    QProcess question;
    question.start(QStringLiteral("xdg-mime"),
                   {QStringLiteral("query"), QStringLiteral("default"), QStringLiteral("text/plain")});
    if (!question.waitForFinished(answer_time)) return {};
    return QString::fromUtf8(question.readAllStandardOutput()).trimmed();
}

std::optional<Command> command_of_desktop(const std::string& path) {
    const QString entry = entry_for_plain_text();
    if (entry.isEmpty()) return std::nullopt;
    const QString file = QStandardPaths::locate(QStandardPaths::ApplicationsLocation, entry);
    if (file.isEmpty()) return std::nullopt;
    const auto text = files::read_file(file.toStdString());
    return text ? command_of_entry(*text, path) : std::nullopt;
}

}  // namespace

std::optional<Command> command_of_entry(std::string_view entry, const std::string& path) {
    if (value_of(entry, "Terminal") == "true" || value_of(entry, "Hidden") == "true") return std::nullopt;
    bool takes_file = false;
    Command command;
    for (const std::string& word : words_of(value_of(entry, "Exec"))) {
        if (word == "%f" || word == "%F" || word == "%u" || word == "%U") {
            command.push_back(path);
            takes_file = true;
        } else if (!word.starts_with('%') || word == "%%") {
            command.push_back(word == "%%" ? "%" : word);
        }
    }
    if (!takes_file || command.size() < 2) return std::nullopt;
    return command;
}

std::optional<Command> editor_command(const std::string& path) {
    for (const char* variable : {"VISUAL", "EDITOR"}) {
        if (auto command = command_of_variable(variable, path)) return command;
    }
    auto command = command_of_desktop(path);
    if (command && find_program(command->front()).empty()) return std::nullopt;
    return command;
}

}  // namespace quill::desktop
