#include "desktop/file_table.h"

#include "desktop/shown_text.h"
#include "files/path.h"

#include <QDateTime>
#include <QFile>
#include <QFileInfo>
#include <QMimeDatabase>

#include <utility>

namespace quill::desktop {
namespace {

/// Returns the name of the icon of a file's type, by only its name: a long list must not open every file.
QString icon_name(const QString& name) {
    return QMimeDatabase().mimeTypeForFile(name, QMimeDatabase::MatchExtension).iconName();
}

}  // namespace

bool FileTableModel::refresh() {
    if (revision_ == list_.revision()) return false;
    beginResetModel();
    revision_ = list_.revision();
    details_.assign(list_.count(), std::nullopt);
    endResetModel();
    return true;
}

int FileTableModel::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : static_cast<int>(details_.size());
}

int FileTableModel::columnCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : column_count;
}

const FileTableModel::Details& FileTableModel::details(std::size_t row) const {
    std::optional<Details>& known = details_.at(row);
    if (!known) {
        const std::string& name = list_.items().at(row);
        const QFileInfo file(QFile::decodeName(QByteArray::fromStdString(files::join(list_.directory(), name))));
        const QString date = file.lastModified().toString(QStringLiteral("yyyy-MM-dd HH:mm"));
        known = Details{shown_size(static_cast<std::uint64_t>(file.size())), date, icon_name(shown_name(name))};
    }
    return *known;
}

QVariant FileTableModel::data(const QModelIndex& index, int role) const {
    const auto row = static_cast<std::size_t>(index.row());
    if (!index.isValid() || row >= list_.count() || row >= details_.size()) return {};
    if (role == Qt::DisplayRole) {
        if (index.column() == name_column) return shown_name(list_.items()[row]);
        return index.column() == size_column ? details(row).size : details(row).date;
    }
    if (role == Qt::DecorationRole && index.column() == name_column) {
        return signs_.of_type(details(row).icon, shown_name(list_.items()[row]));
    }
    if (role == Qt::ToolTipRole && index.column() == name_column) return tool_tip(shown_name(list_.items()[row]));
    if (role == Qt::TextAlignmentRole && index.column() == size_column)
        return QVariant(Qt::AlignRight | Qt::AlignVCenter);
    return {};
}

QVariant FileTableModel::headerData(int section, Qt::Orientation orientation, int role) const {
    if (orientation != Qt::Horizontal || role != Qt::DisplayRole) return {};
    switch (section) {
        case name_column:
            return QStringLiteral("Name");
        case size_column:
            return QStringLiteral("Size");
        default:
            return QStringLiteral("Changed");
    }
}

FileTable::FileTable(controls::FileListBox& list)
    : RowTable(list, QStringLiteral("No files here.\nThe list of directories at the left leads to others.")),
      model_(list) {
    show_rows(model_);
    setMinimumWidth(fontMetrics().averageCharWidth() * 44);
    size_columns({{FileTableModel::size_column, "1,000.0 MB  "}, {FileTableModel::date_column, "2026-12-28 20:28   "}});
}

}  // namespace quill::desktop
