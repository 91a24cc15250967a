#pragma once

#include "desktop/text_form.h"
#include "text/result.h"

#include <QMainWindow>

#include <string>

class QLabel;
class QLineEdit;
class QPlainTextEdit;

namespace quill::desktop {

/// A small text editor, for machines where the user has none: open, find, save, line and column.
///
/// Bytes that the user does not touch are saved unchanged, whatever they are (text_form.h). If the document could not
/// reproduce them, the file is read-only.
class TextEditor final : public QMainWindow {
  public:
    explicit TextEditor(QWidget* parent = nullptr);

    /// Reads the file. On failure the editor does not change.
    Status open(const std::string& path);
    /// Writes the text over its file, in one step.
    Status save();

    /// Searches for `what` from the cursor, wrapping around; returns true if it was found.
    bool find(const QString& what, bool backwards = false);

    QPlainTextEdit& text() const { return *text_; }

  protected:
    void closeEvent(QCloseEvent* event) override;

  private:
    void build_menu();
    void build_find_bar();
    void choose_file();
    bool save_or_say();
    bool may_leave();
    void show_position();
    void show_title();
    void show_note(const FileText& file);
    void say(const QString& what, const Error& error);

    QPlainTextEdit* text_;
    QLineEdit* sought_;
    QLabel* found_;
    QLabel* note_;
    QLabel* position_;
    std::string path_;
    TextForm form_;
    bool can_be_saved_ = true;
};

/// Opens a text editor on `path` in its own window; reports a file that cannot be read.
void edit_in_window(const std::string& path);

/// Closes the open editors, except those with unsaved changes: waits until the user has closed these.
void wait_for_editors();

}  // namespace quill::desktop
