#include "desktop/archive_model.h"

#include "archive/container/member_time.h"
#include "desktop/shown_text.h"
#include "desktop/signs.h"
#include "files/path.h"
#include "text/ascii.h"
#include "zip/member_rows.h"

#include <QApplication>
#include <QFileInfo>
#include <QMimeDatabase>
#include <QStyle>

#include <algorithm>
#include <array>
#include <numeric>

namespace quill::desktop {
namespace {

using zip::RowCondition;
using zip::RowDetails;

std::string_view name_in(const std::string& row) {
    return std::string_view(row).substr(row.rfind('\t') + 1);
}

bool is_number(int column) {
    return column == ArchiveModel::size_column || column == ArchiveModel::packed_column;
}

QString date_of(const RowDetails& details) {
    constexpr std::uint32_t first_day = 0x00210000;  // 1980-01-01, for a member without a date
    if (details.dos_time <= first_day) return {};
    return QString::fromStdString(zip::iso_date_time(details.dos_time)).left(16);
}

const QChar room(0x2003);  // between numbers and the column to their right

QString text_of(const RowDetails& details, int column) {
    switch (column) {
        case ArchiveModel::name_column:
            return shown_name(details.name);
        case ArchiveModel::size_column:
            return details.directory ? QString() : shown_size(details.size) + room;
        case ArchiveModel::packed_column:
            return details.directory ? QString() : shown_size(details.packed) + room;
        case ArchiveModel::method_column:
            return details.directory
                       ? QString()
                       : shown(details.method) + (details.encrypted ? QStringLiteral(", locked") : QString());
        case ArchiveModel::date_column:
            return date_of(details);
        default:
            return details.condition == RowCondition::directory ? QString() : shown(zip::state_text(details));
    }
}

/// Returns the full description of the condition, with the reasons.
QString reasons_of(const RowDetails& details) {
    QString text = shown(zip::condition_text(details.condition));
    for (const std::string& problem : details.problems) text += QStringLiteral("\n• ") + shown(problem);
    return text;
}

}  // namespace

/// Returns a null icon if the row is in order but nothing confirms its bytes.
QIcon ArchiveModel::icon_of(RowCondition condition) const {
    switch (condition) {
        case RowCondition::verified:
            return signs_.of_verdict(codec::Verdict::verified);
        case RowCondition::whole:
            return signs_.of_verdict(codec::Verdict::whole);
        case RowCondition::changed:
        case RowCondition::locked:
        case RowCondition::damaged:
        case RowCondition::refused:
            return signs_.of_verdict(codec::Verdict::damaged);
        default:
            return {};
    }
}

bool ArchiveModel::refresh() {
    if (rows_revision_ != window_.List1.revision()) {
        rows_revision_ = window_.List1.revision();
        shown_revision_ = window_.shown_revision;
        arrange();
        return true;
    }
    if (shown_revision_ != window_.shown_revision) {
        shown_revision_ = window_.shown_revision;
        if (!order_.empty()) Q_EMIT dataChanged(index(0, 0), index(rowCount() - 1, column_count - 1));
    }
    return false;
}

int ArchiveModel::row_of(std::size_t member) const {
    return member < places_.size() ? places_[member] : -1;
}

int ArchiveModel::find(std::string_view text, int from) const {
    const int count = rowCount();
    for (int i = 0; i < count; ++i) {
        const int row = (from + i) % count;
        const std::string_view name = name_in(window_.List1.items()[member_at(row)]);
        const std::string_view bare =
            name.substr(name.rfind('/', name.size() - std::min<std::size_t>(name.size(), 2)) + 1);
        if (name.starts_with(text) || bare.starts_with(text)) return row;
    }
    return -1;
}

int ArchiveModel::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : static_cast<int>(order_.size());
}

int ArchiveModel::columnCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : column_count;
}

/// Uses only the name, and each ending once: a long list must not open its files.
QIcon ArchiveModel::icon_of(const RowDetails& details) const {
    const QString folder = QStringLiteral("folder");
    if (details.directory) return QIcon::fromTheme(folder, QApplication::style()->standardIcon(QStyle::SP_DirIcon));
    const QString name = shown_name(files::name_of(details.name));
    const QString ending = QFileInfo(name).suffix().toLower();
    auto theme_name = theme_names_.find(ending);
    if (theme_name == theme_names_.end()) {
        const QMimeType type = QMimeDatabase().mimeTypeForFile(name, QMimeDatabase::MatchExtension);
        theme_name = theme_names_.insert(ending, type.iconName());
    }
    return signs_.of_type(*theme_name, name);
}

QVariant ArchiveModel::data(const QModelIndex& index, int role) const {
    const auto row = static_cast<std::size_t>(index.row());
    if (!index.isValid() || row >= order_.size() || order_[row] >= window_.List1.count()) return {};
    const int column = index.column();
    if (role == Qt::TextAlignmentRole) {
        return QVariant::fromValue(Qt::AlignVCenter | (is_number(column) ? Qt::AlignRight : Qt::AlignLeft));
    }
    if (role != Qt::DisplayRole && role != Qt::DecorationRole && role != Qt::ToolTipRole &&
        role != Qt::AccessibleDescriptionRole) {
        return {};
    }
    ++rows_read_;
    const RowDetails details = zip::row_details(window_, order_[row]);
    switch (role) {
        case Qt::DisplayRole:
            return text_of(details, column);
        case Qt::DecorationRole:
            if (column == name_column) return icon_of(details);
            return column == condition_column ? icon_of(details.condition) : QVariant();
        case Qt::ToolTipRole:
            if (column == name_column) return tool_tip(shown_name(details.name));
            if (column == condition_column && !details.directory) return tool_tip(reasons_of(details));
            return {};
        default:
            return column == condition_column ? reasons_of(details) : QVariant();
    }
}

QVariant ArchiveModel::headerData(int section, Qt::Orientation orientation, int role) const {
    static constexpr std::array<const char*, column_count> titles = {"Name",   "Size", "Packed",
                                                                     "Method", "Date", "Condition"};
    if (orientation != Qt::Horizontal) return {};
    if (role == Qt::TextAlignmentRole) {
        return QVariant::fromValue(Qt::AlignVCenter | (is_number(section) ? Qt::AlignRight : Qt::AlignLeft));
    }
    if (role == Qt::DisplayRole) return QString::fromLatin1(titles.at(static_cast<std::size_t>(section)));
    return {};
}

Qt::ItemFlags ArchiveModel::flags(const QModelIndex& index) const {
    return index.isValid() ? Qt::ItemIsSelectable | Qt::ItemIsEnabled | Qt::ItemIsDragEnabled : Qt::NoItemFlags;
}

void ArchiveModel::sort(int column, Qt::SortOrder order) {
    sorted_by_ = column;
    sort_order_ = order;
    arrange();
}

void ArchiveModel::arrange() {
    beginResetModel();
    const std::vector<std::string>& rows = window_.List1.items();
    order_.resize(rows.size());
    std::iota(order_.begin(), order_.end(), std::size_t{0});
    if (sorted_by_ >= 0) zip::sort_rows(window_, static_cast<zip::RowKey>(sorted_by_), order_);
    if (sorted_by_ >= 0 && sort_order_ == Qt::DescendingOrder) std::reverse(order_.begin(), order_.end());
    places_.assign(rows.size(), 0);
    for (std::size_t i = 0; i < order_.size(); ++i) places_[order_[i]] = static_cast<int>(i);
    endResetModel();
}

}  // namespace quill::desktop
