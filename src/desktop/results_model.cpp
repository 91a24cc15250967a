#include "desktop/results_model.h"

#include "desktop/shown_text.h"
#include "files/directory.h"

#include <QMimeData>
#include <QUrl>

#include <algorithm>
#include <array>
#include <numeric>
#include <string_view>
#include <vector>

namespace quill::desktop {
namespace {

constexpr std::size_t most_sentences = 8;

struct Sentence {
    std::string_view text;
    std::size_t times = 1;
};

/// Returns the different sentences of `problems`, in order.
std::vector<Sentence> sentences_of(const std::vector<std::string>& problems) {
    std::vector<Sentence> sentences;
    for (const std::string& problem : problems) {
        const auto known = std::find_if(sentences.begin(), sentences.end(),
                                        [&](const Sentence& each) { return each.text == problem; });
        if (known != sentences.end()) {
            ++known->times;
        } else if (sentences.size() <= most_sentences) {
            sentences.push_back({problem});
        }
    }
    return sentences;
}

struct Words {
    const char* brief;
    const char* length;
};

/// By codec::Verdict.
constexpr std::array<Words, 4> verdict_words = {
    {{"Verified", "A checksum or the stated size agrees with this file."},
     {"Whole", "The file is complete. The message holds no checksum to compare it with."},
     {"Damaged", "Some bytes of this file are wrong or lost. What could be recovered is in it."},
     {"Incomplete", "A part of this file is missing. What could be recovered is in it."}}};

const Words& words_of(codec::Verdict verdict) {
    return verdict_words.at(static_cast<std::size_t>(verdict));
}

}  // namespace

namespace {

QString verdict_word(const ResultsModel::Row& row) {
    if (row.details.disguised) return QStringLiteral("Program");
    if (row.result.size == 0U) return QStringLiteral("Empty");
    if (row.result.verdict) return QString::fromLatin1(words_of(*row.result.verdict).brief);
    return QStringLiteral("Not checked");
}

QString scan_words(const ResultsModel::Row& row) {
    const bool is_answer = row.result.scan == shell::ScanAnswer::nothing_found;
    return QStringLiteral(", ") + (is_answer ? shown(row.result.scan_text) : QStringLiteral("not scanned"));
}

}  // namespace

QString verdict_text(const ResultsModel::Row& row) {
    if (!row.result.size) return QStringLiteral("Gone");
    if (row.result.scan == shell::ScanAnswer::found) return QStringLiteral("Virus found");
    QString text = verdict_word(row);
    if (row.result.scan) text += scan_words(row);
    return text;
}

QString verdict_reasons(const ResultsModel::Row& row) {
    if (!row.result.size) return QStringLiteral("This file is no longer where it was written.");
    QString text = row.result.verdict ? QString::fromLatin1(words_of(*row.result.verdict).length)
                                      : QStringLiteral("Nothing is known about how complete this file is.");
    std::vector<Sentence> sentences = sentences_of(row.details.problems);
    const bool more = sentences.size() > most_sentences;
    if (more) sentences.pop_back();
    for (const Sentence& each : sentences) {
        text += QStringLiteral("\n• ") + shown(each.text);
        if (each.times > 1) text += QStringLiteral(" (%L1 times)").arg(each.times);
    }
    if (more) text += QStringLiteral("\n• and other problems");
    if (row.result.scan) text += QStringLiteral("\n• ") + shown(row.result.scan_text);
    return text;
}

bool ResultsModel::refresh(bool always) {
    if (!always && revision_ == window_.List3.revision()) return false;
    beginResetModel();
    revision_ = window_.List3.revision();
    rows_.clear();
    order_.resize(window_.List3.count());
    std::iota(order_.begin(), order_.end(), std::size_t{0});
    std::stable_sort(order_.begin(), order_.end(),
                     [this](std::size_t a, std::size_t b) { return run_of(a) > run_of(b); });
    endResetModel();
    return true;
}

unsigned ResultsModel::run_of(std::size_t row) const {
    return row < window_.Results.size() ? window_.Results[row].run : 0;
}

int ResultsModel::shown_row(std::size_t row) const {
    const auto place = std::find(order_.begin(), order_.end(), row);
    return place == order_.end() ? -1 : static_cast<int>(place - order_.begin());
}

bool ResultsModel::has_several_runs() const {
    return !order_.empty() && run_of(order_.front()) != run_of(order_.back());
}

const ResultsModel::Row& ResultsModel::at(std::size_t row) const {
    if (const Row* known = rows_.object(row)) return *known;
    auto* read = new Row{decoder::result_row(window_, row), decoder::row_details(window_, row)};
    rows_.insert(row, read);
    return *read;
}

int ResultsModel::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : static_cast<int>(order_.size());
}

int ResultsModel::columnCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : column_count;
}

QVariant ResultsModel::text(std::size_t row, int column) const {
    if (column == name_column) return shown_name(window_.List3.items()[row]);
    if (column == source_column) {
        return row < window_.Results.size() ? shown_name(window_.Results[row].source) : QString();
    }
    if (column != size_column) return verdict_text(at(row));
    const auto& size = at(row).result.size;
    return (size ? shown_size(*size) : shown(at(row).details.size)) + QChar(0x2003);
}

QVariant ResultsModel::decoration(std::size_t row, int column) const {
    if (column == size_column || column == source_column) return {};
    const Row& known = at(row);
    if (column == name_column) return signs_.of_type(shown(known.details.icon), shown_name(known.result.name));
    if (known.details.doubtful) return signs_.of_verdict(codec::Verdict::damaged);
    return known.result.verdict ? signs_.of_verdict(*known.result.verdict) : QVariant();
}

Qt::ItemFlags ResultsModel::flags(const QModelIndex& index) const {
    return QAbstractTableModel::flags(index) | (index.isValid() ? Qt::ItemIsDragEnabled : Qt::NoItemFlags);
}

QMimeData* ResultsModel::mimeData(const QModelIndexList& indexes) const {
    QList<QUrl> urls;
    for (const QModelIndex& index : indexes) {
        if (index.column() != name_column) continue;
        const std::string path = decoder::result_path(window_, list_row(index.row()));
        if (files::exists(path)) urls.push_back(file_url(path));
    }
    if (urls.isEmpty()) return nullptr;
    auto* data = new QMimeData;
    data->setUrls(urls);
    return data;
}

QVariant ResultsModel::data(const QModelIndex& index, int role) const {
    const auto shown_at = static_cast<std::size_t>(index.row());
    if (!index.isValid() || shown_at >= order_.size()) return {};
    const std::size_t row = order_[shown_at];
    if (row >= window_.List3.count()) return {};  // the list may be ahead of the view
    switch (role) {
        case Qt::DisplayRole:
            return text(row, index.column());
        case Qt::DecorationRole:
            return decoration(row, index.column());
        case Qt::ToolTipRole:
            return tool_tip(index.column() == name_column ? shown_name(window_.List3.items()[row])
                                                          : verdict_reasons(at(row)));
        case Qt::AccessibleDescriptionRole:
            return verdict_reasons(at(row));
        case Qt::TextAlignmentRole:
            return QVariant::fromValue(Qt::AlignVCenter |
                                       (index.column() == size_column ? Qt::AlignRight : Qt::AlignLeft));
        default:
            return {};
    }
}

QVariant ResultsModel::headerData(int section, Qt::Orientation orientation, int role) const {
    if (orientation != Qt::Horizontal) return {};
    static constexpr std::array<const char*, column_count> titles = {"File", "Size\u2003", "Condition", "From"};
    if (role == Qt::TextAlignmentRole && section == size_column) {
        return QVariant::fromValue(Qt::AlignVCenter | Qt::AlignRight);
    }
    if (role == Qt::DisplayRole) return QString::fromUtf8(titles.at(static_cast<std::size_t>(section)));
    return {};
}

}  // namespace quill::desktop
