#pragma once

#include "archive/archive_builder.h"
#include "shell/open_archive.h"
#include "support/program.h"
#include "support/temporary_directory.h"
#include "zip/archive_window.h"
#include "zip/member_rows.h"

#include <string>
#include <vector>

namespace quill::tests {

/// The program with an archive `a.zip` to open, as after a plain start.
struct WindowProgram : Program {
    TemporaryDirectory dir;
    zip::NewZIP archives{context};

    explicit WindowProgram(const std::string& archive, const std::string& name = "a.zip") {
        dir.write(name, archive);
        session.SelectedDir = dir.path();
        session.SelectedFile = name;
        session.AppDir = dir.path();
        session.WorkDir = main_window.Text1.text = dir.make_directory("temp");
        zip::provide_contents(context, archives);
        zip::provide_archive_window(context, archives);
    }
    /// Unpacks beside the archive, like the switch /un.
    void unpack_beside() { session.WorkDir = dir.path(); }

    zip::arcview& open() {
        shell::openarchive(context);
        zip::arcview* w = window();
        if (w == nullptr) throw std::runtime_error("the archive window did not open");
        return *w;
    }
    zip::arcview* window() { return windows.loaded<zip::arcview>(); }

    /// Returns the path of a member's file.
    std::string file(std::size_t row) { return archives.copies().path_of(row); }
    std::string bytes_of(std::size_t row) { return dir.read(file(row)); }
    /// Changes a member's file like another program.
    void change(std::size_t row, const std::string& bytes) { dir.write(file(row), bytes); }

    std::vector<std::string> names() {
        std::vector<std::string> out;
        for (const std::string& row : window()->List1.items()) out.push_back(zip::name_in_row(row));
        return out;
    }
    /// Returns the content of a member in the archive on the disk.
    std::string stored(std::size_t member) {
        const auto opened = archives.library().open(window()->ArchivePath);
        std::string content;
        const auto take = [&](std::string_view bytes) {
            content += bytes;
            return true;
        };
        zip::MemberReader(opened->archive, session.ZipPassword).read(opened->archive.members().at(member), take);
        return content;
    }
};

}  // namespace quill::tests
