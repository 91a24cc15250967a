#include "desktop/directory_list.h"

#include "desktop/shown_text.h"
#include "files/directory.h"
#include "files/mounts.h"
#include "files/path.h"

#include <QStyle>

#include <algorithm>
#include <vector>

namespace quill::desktop {
namespace {

constexpr int path_role = Qt::UserRole;

QByteArray as_bytes(const std::string& path) {
    return {path.data(), static_cast<qsizetype>(path.size())};
}

/// Returns `path` and all directories above it, from the root down.
std::vector<std::string> chain_to(std::string path) {
    std::vector<std::string> chain;
    while (!path.empty()) {
        chain.push_back(path);
        if (files::is_root(path)) break;
        path = files::dir_of(path);
    }
    std::reverse(chain.begin(), chain.end());
    return chain;
}

}  // namespace

DirectoryList::DirectoryList(QWidget* parent) : QListWidget(parent) {
    setHorizontalScrollMode(ScrollPerPixel);
    connect(this, &QListWidget::itemActivated, this, [this](const QListWidgetItem* item) {
        if (went_to) went_to(item->data(path_role).toByteArray().toStdString());
    });
}

void DirectoryList::add(const std::string& path, const QString& text, int depth) {
    auto* item = new QListWidgetItem(QString(depth, QChar::Nbsp) + text, this);
    item->setIcon(style()->standardIcon(QStyle::SP_DirIcon));
    item->setData(path_role, as_bytes(path));
}

void DirectoryList::set_path(const std::string& path, bool with_hidden) {
    clear();
    int depth = 0;
    for (const std::string& above : chain_to(path)) {
        add(above, shown_name(files::is_root(above) ? above : files::name_of(above)), depth++);
    }
    setCurrentRow(count() - 1);
    const auto below = files::list_directories(path);
    if (!below) return;
    for (const std::string& name : *below) {
        if (with_hidden || !name.starts_with('.')) add(files::join(path, name), shown_name(name), depth);
    }
}

DriveBox::DriveBox(QWidget* parent) : QComboBox(parent) {
    setSizeAdjustPolicy(AdjustToContents);
    connect(this, &QComboBox::activated, this, [this](int row) {
        if (went_to) went_to(itemData(row).toByteArray().toStdString());
    });
}

void DriveBox::set_drive(const std::string& drive) {
    clear();
    std::vector<std::string> drives = files::drives();
    if (!drive.empty() && std::find(drives.begin(), drives.end(), drive) == drives.end()) drives.push_back(drive);
    for (const std::string& each : drives) addItem(shown_name(each), as_bytes(each));
    setCurrentIndex(findData(as_bytes(drive)));
}

}  // namespace quill::desktop
