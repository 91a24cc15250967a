#include "desktop/contents_view.h"

#include "desktop/pieces.h"
#include "desktop/shown_text.h"

#include <QGridLayout>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QLabel>
#include <QPushButton>
#include <QShortcut>
#include <QTreeWidget>
#include <QVBoxLayout>

namespace quill::desktop {
namespace {

// A row's fields, separated by tabs.
enum Field { date_field, packed_field, size_field, percent_field, name_field, field_count };

// The name comes first on the screen: people look for it.
constexpr Field columns[] = {name_field, date_field, packed_field, size_field, percent_field};

/// Returns the fields of a row. The name is the last one, and may contain tabs.
QStringList fields_of(std::string_view row) {
    QStringList fields;
    for (int field = 0; field < name_field; ++field) {
        const std::size_t end = row.find('\t');
        fields += shown_name(row.substr(0, end));
        row.remove_prefix(end == std::string_view::npos ? row.size() : end + 1);
    }
    return fields << shown_name(row);
}

bool is_number(Field field) {
    return field == packed_field || field == size_field || field == percent_field;
}

}  // namespace

ContentsView::ContentsView(zip::Form1& window, EventLoop& events) : View(window, new QWidget, events), w_(window) {
    name_controls(window);
    const int space = frame().fontMetrics().height();
    auto* layout = new QVBoxLayout(&frame());
    layout->setContentsMargins(space, space, space, space);
    layout->setSpacing(space / 2);
    layout->addWidget(make_table(), 1);
    layout->addWidget(make_totals());
    frame().setMinimumSize(frame().fontMetrics().averageCharWidth() * 90, space * 24);
    auto* escape = new QShortcut(QKeySequence(Qt::Key_Escape), &frame());
    QObject::connect(escape, &QShortcut::activated, &frame(), [this] { hand_in(w_.Command1.click); });
}

QTreeWidget* ContentsView::make_table() {
    auto* table = new QTreeWidget;
    adopt(w_.List1, table);
    table->setColumnCount(field_count);
    table->setHeaderLabels({shown(w_.Label9.text), shown(w_.Label6.text), shown(w_.Label7.text), shown(w_.Label8.text),
                            QStringLiteral("Percent")});
    table->setRootIsDecorated(false);
    table->setUniformRowHeights(true);
    table->setAllColumnsShowFocus(true);
    table->setAlternatingRowColors(true);
    table->setTextElideMode(Qt::ElideMiddle);
    table->header()->setStretchLastSection(false);
    table->header()->setSectionResizeMode(QHeaderView::ResizeToContents);
    table->header()->setSectionResizeMode(0, QHeaderView::Stretch);
    on_sync([this, table, revision = Drawn<std::uint64_t>()]() mutable {
        revision.update(w_.List1.revision(), [&](std::uint64_t) { fill(table); });
    });
    return table;
}

void ContentsView::fill(QTreeWidget* table) const {
    table->clear();
    QList<QTreeWidgetItem*> rows;
    for (const std::string& item : w_.List1.items()) {
        const QStringList fields = fields_of(item);
        auto* row = new QTreeWidgetItem;
        for (int column = 0; column < field_count; ++column) {
            const Field field = columns[column];
            row->setText(column, fields[field]);
            if (is_number(field)) row->setTextAlignment(column, Qt::AlignRight | Qt::AlignVCenter);
        }
        row->setToolTip(0, tool_tip(row->text(0)));
        rows.append(row);
    }
    table->addTopLevelItems(rows);
}

QWidget* ContentsView::make_totals() {
    auto* area = new QWidget;
    auto* layout = new QHBoxLayout(area);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(area->fontMetrics().height());
    layout->addWidget(bind(w_.Label5, plain_label()));
    for (auto [heading, value] : {std::pair{&w_.Label3, &w_.Label2}, {&w_.Label4, &w_.Label1}}) {
        auto* pair = new QHBoxLayout;
        pair->setSpacing(area->fontMetrics().height() / 2);
        pair->addWidget(bind(*heading, plain_label()));
        pair->addWidget(bind(*value, plain_label()));
        layout->addLayout(pair);
    }
    layout->addStretch(1);
    auto* close = new QPushButton;
    close->setDefault(true);
    layout->addWidget(bind(w_.Command1, close));
    return area;
}

}  // namespace quill::desktop
