#include "config/setup/status_grid.h"

#include <algorithm>

#include "core/table.h"
#include "protocol/status_table.h"

namespace {

/// Keys on which the grid does nothing: they would leave its own order of moving about, and Return opens the entry.
constexpr int kCancelledKeys[] = {KeyCode::Return, KeyCode::PageUp, KeyCode::PageDown,
                                  KeyCode::End,    KeyCode::Home,   KeyCode::Right};

}  // namespace

const StatusGrid::Cell& StatusGrid::At(int row, int column) const {
  if (row < 0 || row >= kRows || column < 0 || column >= kColumns) RaiseSubscriptOutOfRange();
  return rows_[static_cast<std::size_t>(row)][static_cast<std::size_t>(column)];
}

void StatusGrid::Set(int row, int column, Cell text) {
  if (row < 0 || row >= kRows || column < 0 || column >= kColumns) RaiseSubscriptOutOfRange();
  rows_[static_cast<std::size_t>(row)][static_cast<std::size_t>(column)] = std::move(text);
  ++revision_;
}

int StatusGrid::FirstEmptyEntry() {
  constexpr std::size_t kLast = kRows - 1;
  for (std::size_t row = 0; row <= kLast; ++row) {
    Cell& name = rows_[row][0];
    if (!name) name = "";
    if (name->empty()) return row < kLast ? static_cast<int>(row) : -1;
  }
  return -1;
}

void StatusGrid::InsertEntry(int row, const StatusRowTexts& texts) {
  const auto at = rows_.begin() + row;
  std::move_backward(at, rows_.end() - 1, rows_.end());
  ReplaceEntry(row, texts);
}

void StatusGrid::ReplaceEntry(int row, const StatusRowTexts& texts) {
  for (int column = 0; column < kColumns; ++column) Set(row, column, texts[static_cast<std::size_t>(column)]);
}

void StatusGrid::DeleteEntry(int row) {
  constexpr int kLast = kRows - 1;
  if (row < kLast) {
    std::move(rows_.begin() + row + 1, rows_.begin() + kLast, rows_.begin() + row);
    rows_[kLast - 1].fill(std::nullopt);
  }
  ReplaceEntry(kLast, {});
}

void StatusGrid::SetVisibleRows(int rows) {
  visibleRows_ = std::max(2, rows);
  ScrollToSelection();
}

void StatusGrid::SelectRow(int row) {
  const int firstEmpty = FirstEmptyEntry();
  bookmark_ = std::clamp(row, 0, kRows - 1);
  if (firstEmpty >= 0 && bookmark_ > firstEmpty) bookmark_ = firstEmpty;
  ScrollToSelection();
}

void StatusGrid::ScrollToSelection() { firstRow_ = bookmark_ < visibleRows_ ? 0 : bookmark_ - visibleRows_ + 2; }

bool StatusGrid::TakesKey(int keyCode) {
  if (keyCode == KeyCode::Down) {
    const int firstEmpty = FirstEmptyEntry();
    return firstEmpty < 0 || bookmark_ < firstEmpty;
  }
  return std::find(std::begin(kCancelledKeys), std::end(kCancelledKeys), keyCode) == std::end(kCancelledKeys);
}

void StatusGrid::Show(const StatusTable& table) {
  for (int row = 0; row < kRows; ++row) {
    for (int column = 0; column < kColumns; ++column) Set(row, column, table.Cell(row, column));
  }
  SelectRow(0);
}

void StatusGrid::PutInto(StatusTable& table) const {
  table.Clear();
  for (int row = 0; row < kRows; ++row) {
    for (int column = 0; column < kColumns; ++column) table.SetCell(row, column, At(row, column));
  }
}
