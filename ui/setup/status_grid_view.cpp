#include "ui/setup/status_grid_view.h"

#include <QHeaderView>
#include <QKeyEvent>
#include <QScopedValueRollback>
#include <QScrollBar>

#include "platform/qt/text.h"
#include "ui/fonts.h"
#include "ui/key_code.h"
#include "ui/magnification.h"

namespace {

struct Column {
  const char* heading;
  int width;
};

constexpr Column kColumns[StatusGrid::kColumns] = {
    {"Status Field Name / Description", 0},  // takes the rest
    {"DDE Field", 84},
    {"1st Char.\nPosition", 54},
    {"Field\nLength", 44},
    {"Validation\nBit Mask", 62},
    {"Enable", 44},
};

constexpr int kRowHeight = 17;

}  // namespace

QVariant StatusGridModel::data(const QModelIndex& index, int role) const {
  if (role == Qt::DisplayRole) return ToVisibleText(grid_.At(index.row(), index.column()).value_or(""));
  if (role == Qt::TextAlignmentRole && index.column() >= 2) return Qt::AlignCenter;
  return {};
}

QVariant StatusGridModel::headerData(int section, Qt::Orientation orientation, int role) const {
  if (orientation == Qt::Vertical || role != Qt::DisplayRole) return {};
  return kColumns[section].heading;
}

void StatusGridModel::Rebind() {
  emit dataChanged(index(0, 0), index(StatusGrid::kRows - 1, StatusGrid::kColumns - 1));
}

StatusGridView::StatusGridView(SetupModel& model, QWidget* parent)
    : QTableView(parent), model_(model), table_(new StatusGridModel(model.Grid(), this)) {
  setModel(table_);
  setSelectionBehavior(SelectRows);
  setSelectionMode(SingleSelection);
  setEditTriggers(NoEditTriggers);
  setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
  setVerticalScrollMode(ScrollPerItem);
  setAutoScroll(false);
  setTabKeyNavigation(false);
  setWordWrap(false);
  verticalHeader()->hide();
  QHeaderView& headings = *horizontalHeader();
  headings.setSectionsClickable(false);
  headings.setHighlightSections(false);
  headings.setSectionResizeMode(QHeaderView::Fixed);
  headings.setSectionResizeMode(0, QHeaderView::Stretch);
  headings.setFixedHeight(30);
  MagnifySections();
  OnMagnification(*this, [this] { MagnifySections(); });
}

void StatusGridView::MagnifySections() {
  verticalHeader()->setMinimumSectionSize(Magnified(kRowHeight));
  verticalHeader()->setDefaultSectionSize(Magnified(kRowHeight));
  for (int column = 1; column < StatusGrid::kColumns; ++column) {
    setColumnWidth(column, Magnified(kColumns[column].width));
  }
}

void StatusGridView::Refresh() {
  const StatusGrid& grid = model_.Grid();
  if (grid.Revision() != shownRevision_) {
    shownRevision_ = grid.Revision();
    table_->Rebind();
  }
  QPalette colours = palette();
  const QColor ink = model_.Fields().At(Control::TDBList1).greyText ? QColor(0x80, 0x80, 0x80) : QColor(Qt::black);
  if (colours.color(QPalette::Text) != ink) {
    for (auto group : {QPalette::Active, QPalette::Inactive, QPalette::Disabled}) {
      colours.setColor(group, QPalette::Text, ink);
    }
    setPalette(colours);
  }
  ShowSelection();
}

void StatusGridView::ShowSelection() {
  const StatusGrid& grid = model_.Grid();
  const QScopedValueRollback showing(showing_, true);
  const QModelIndex selected = table_->index(grid.Bookmark(), grid.Col());
  if (currentIndex() != selected) setCurrentIndex(selected);
  if (shownRow_ == grid.Bookmark()) return;
  shownRow_ = grid.Bookmark();
  verticalScrollBar()->setValue(grid.FirstRow());
}

void StatusGridView::Scroll(int rows) { verticalScrollBar()->setValue(verticalScrollBar()->value() + rows); }

void StatusGridView::keyPressEvent(QKeyEvent* event) {
  const int code = KeyCodeOf(*event);
  if (code == KeyCode::Return) return model_.OpenEntry();
  if (code != 0 && !model_.Grid().TakesKey(code)) return;
  QTableView::keyPressEvent(event);
}

void StatusGridView::mouseDoubleClickEvent(QMouseEvent* event) {
  QTableView::mouseDoubleClickEvent(event);
  if (indexAt(event->position().toPoint()).isValid()) model_.OpenEntry();
}

void StatusGridView::currentChanged(const QModelIndex& current, const QModelIndex& previous) {
  QTableView::currentChanged(current, previous);
  if (showing_ || !current.isValid()) return;
  // A click goes on to select the row that it hit, so the model's answer is shown behind it.
  QMetaObject::invokeMethod(
      this,
      [this, row = current.row(), column = current.column()] {
        shownRow_ = -1;
        model_.SelectCell(row, column);
      },
      Qt::QueuedConnection);
}

void StatusGridView::resizeEvent(QResizeEvent* event) {
  QTableView::resizeEvent(event);
  model_.Grid().SetVisibleRows(viewport()->height() / Magnified(kRowHeight));
}
