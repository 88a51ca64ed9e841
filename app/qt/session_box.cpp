#include "app/qt/session_box.h"

#include "app/qt/texts.h"

#include <QAbstractTableModel>
#include <QBoxLayout>
#include <QHeaderView>
#include <algorithm>
#include <utility>

namespace lumbrine {

namespace {

constexpr int sessionWidth = 620;
constexpr int sessionHeight = 480;
constexpr int nameColumn = 2;
constexpr int commentColumn = 5;

const std::string& cellOf(const SessionRow& row, int column) {
    switch (column) {
    case 0:
        return row.number;
    case 1:
        return row.strip;
    case nameColumn:
        return row.name;
    case 3:
        return row.fader;
    case 4:
        return row.lights;
    default:
        return row.comment;
    }
}

} // namespace

// The rows of a page for the toolkit's list.
class SessionTable final : public QAbstractTableModel {
public:
    using QAbstractTableModel::QAbstractTableModel;

    // Rows of the same tracks stay the same rows, so that the list keeps its place and its current row.
    void show(const SessionPage& wanted) {
        if (wanted == page) return;
        const bool isSame = std::ranges::equal(wanted.rows, page.rows, {}, &SessionRow::track, &SessionRow::track) &&
                            wanted.headings == page.headings;
        if (!isSame) beginResetModel();
        page = wanted;
        if (!isSame) {
            endResetModel();
        } else if (!page.rows.empty()) {
            dataChanged(index(0, 0), index(rowCount({}) - 1, columnCount({}) - 1));
        }
    }

    std::size_t trackIn(int row) const { return page.rows[static_cast<std::size_t>(row)].track; }

    int rowCount(const QModelIndex& parent) const override {
        return parent.isValid() ? 0 : static_cast<int>(page.rows.size());
    }
    int columnCount(const QModelIndex& parent) const override {
        return parent.isValid() ? 0 : static_cast<int>(page.headings.size());
    }
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override {
        if (orientation != Qt::Horizontal || role != Qt::DisplayRole) return {};
        return shown(page.headings[static_cast<std::size_t>(section)]);
    }
    QVariant data(const QModelIndex& at, int role) const override {
        const SessionRow& row = page.rows[static_cast<std::size_t>(at.row())];
        if (role == Qt::DisplayRole) return shown(cellOf(row, at.column()));
        if (role == Qt::DecorationRole && at.column() == nameColumn && row.color)
            return QColor(row.color->red(), row.color->green(), row.color->blue());
        return {};
    }

private:
    SessionPage page;
};

SessionBox::SessionBox(Listener given, QWidget* parent)
    : QDialog(parent), listener(std::move(given)), field(new QLineEdit(this)), list(new QTableView(this)),
      table(new SessionTable(this)), note(new QLabel(this)) {
    field->setClearButtonEnabled(true);
    list->setModel(table);
    list->setSelectionBehavior(QAbstractItemView::SelectRows);
    list->setSelectionMode(QAbstractItemView::SingleSelection);
    list->setEditTriggers(QAbstractItemView::NoEditTriggers);
    list->setTabKeyNavigation(false);
    list->setShowGrid(false);
    list->setWordWrap(false);
    list->verticalHeader()->hide();
    list->verticalHeader()->setDefaultSectionSize(fontMetrics().height() + 6);
    list->horizontalHeader()->setHighlightSections(false);
    list->horizontalHeader()->setDefaultAlignment(Qt::AlignLeft | Qt::AlignVCenter);
    note->setTextFormat(Qt::PlainText);
    note->setWordWrap(true);
    auto* page = new QVBoxLayout(this);
    page->addWidget(field);
    page->addWidget(list, 1);
    page->addWidget(note);
    QObject::connect(field, &QLineEdit::textChanged, this, [this] { listener.searched(); });
    const auto choose = [this](const QModelIndex& at) { listener.chosen(table->trackIn(at.row())); };
    QObject::connect(list, &QAbstractItemView::clicked, this, choose);
    QObject::connect(list, &QAbstractItemView::activated, this, choose);
    resize(sessionWidth, sessionHeight);
}

std::string SessionBox::search() const {
    return field->text().trimmed().toStdString();
}

void SessionBox::display(const SessionPage& page) {
    const bool isFirst = windowTitle().isEmpty();
    setWindowTitle(shown(page.title));
    field->setPlaceholderText(shown(page.searchHint));
    field->setAccessibleName(shown(page.searchHint));
    list->setAccessibleName(shown(page.title));
    table->show(page);
    note->setText(shown(page.note));
    if (!isFirst) return;
    list->horizontalHeader()->setSectionResizeMode(QHeaderView::ResizeToContents);
    list->horizontalHeader()->setSectionResizeMode(nameColumn, QHeaderView::Stretch);
    list->horizontalHeader()->setSectionResizeMode(commentColumn, QHeaderView::Stretch);
}

} // namespace lumbrine
