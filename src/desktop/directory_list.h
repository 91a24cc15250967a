#pragma once

#include <QComboBox>
#include <QListWidget>

#include <functional>
#include <string>

namespace quill::desktop {

/// The directory that the user stands in, below those above it and over those in it. A double click or Enter goes to
/// one.
class DirectoryList final : public QListWidget {
  public:
    explicit DirectoryList(QWidget* parent = nullptr);

    void set_path(const std::string& path, bool with_hidden);

    std::function<void(const std::string& path)> went_to;

  private:
    void add(const std::string& path, const QString& text, int depth);
};

/// The mount points of the machine, of which one is in use.
class DriveBox final : public QComboBox {
  public:
    explicit DriveBox(QWidget* parent = nullptr);

    void set_drive(const std::string& drive);

    std::function<void(const std::string& drive)> went_to;
};

}  // namespace quill::desktop
