#include "desktop/file_opener.h"

#include "desktop/process.h"
#include "desktop/shown_text.h"
#include "desktop/text_editors.h"
#include "files/directory.h"
#include "files/path.h"

#include <QDesktopServices>
#include <QFile>
#include <QMimeDatabase>

#include <array>

namespace quill::desktop {
namespace {

/// Types that a desktop starts instead of showing.
constexpr std::array program_types = {"application/x-executable",
                                      "application/x-sharedlib",
                                      "application/x-pie-executable",
                                      "application/x-desktop",
                                      "application/x-shellscript",
                                      "application/x-ms-dos-executable",
                                      "application/x-msdownload",
                                      "application/vnd.microsoft.portable-executable",
                                      "application/x-msi",
                                      "application/x-ms-shortcut",
                                      "application/x-bat",
                                      "application/x-java-archive",
                                      "application/vnd.appimage",
                                      "application/x-iso9660-appimage",
                                      "application/vnd.flatpak.ref"};

}  // namespace

bool FileOpener::open_with_default(const std::string& path) {
    const std::string file = files::absolute(path);
    if (show_guide && !guide.empty() && file == guide) {
        show_guide(file);
        return true;
    }
    if (is_program(file)) {
        if (say) {
            say("The file " + files::name_of(file) +
                " is a program. Programs that came with a message may do harm, so it is not started from here.");
        }
        return false;
    }
    return QDesktopServices::openUrl(file_url(file));
}

bool FileOpener::is_program(const std::string& path) {
    const QMimeType type = QMimeDatabase().mimeTypeForFile(QFile::decodeName(QByteArray::fromStdString(path)));
    return std::any_of(program_types.begin(), program_types.end(),
                       [&](const char* program) { return type.inherits(QLatin1String(program)); });
}

bool FileOpener::start(const std::string& program, const std::vector<std::string>& arguments,
                       const std::string& directory) {
    const std::string path = find_program(program);
    return !path.empty() && start_detached(path, arguments, directory);
}

bool FileOpener::edit_text(const std::string& path) {
    const std::string file = files::absolute(path);
    if (const auto editor = editor_command(file)) {
        if (start(editor->front(), {editor->begin() + 1, editor->end()}, files::dir_of(file))) return true;
    }
    if (!edit_here) return false;
    edit_here(file);
    return true;
}

bool FileOpener::move_to_trash(const std::string& path) {
    const QByteArray bytes = QByteArray::fromStdString(path);
    const QString name = QFile::decodeName(bytes);
    return QFile::encodeName(name) == bytes && QFile::moveToTrash(name);
}

}  // namespace quill::desktop
