#pragma once

#include <QComboBox>
#include <QListWidget>

#include <functional>
#include <string>

namespace quill::desktop {

/// The current directory, below its parents and above its subdirectories. A double click or Enter goes to one.
class DirectoryList final : public QListWidget {
  public:
    explicit DirectoryList(QWidget* parent = nullptr);

    void set_path(const std::string& path, bool with_hidden);

    std::function<void(const std::string& path)> went_to;

  private:
    void add(const std::string& path, const QString& text, int depth);
};

/// The mount points of the machine, one of them current.
class DriveBox final : public QComboBox {
  public:
    explicit DriveBox(QWidget* parent = nullptr);

    void set_drive(const std::string& drive);

    std::function<void(const std::string& drive)> went_to;
};

}  // namespace quill::desktop
