#pragma once

#include <array>
#include <optional>
#include <string>

class StatusTable;

/// Key codes of the grid and of the number fields, as the screen's events carry them.
namespace KeyCode {
inline constexpr int Back = 8, Tab = 9, Return = 13, Escape = 27, PageUp = 33, PageDown = 34, End = 35, Home = 36,
                     Left = 37, Up = 38, Right = 39, Down = 40, Delete = 46, Digit0 = 48, Digit9 = 57;
}  // namespace KeyCode

/// What stands in one row of the status table: name, DDE field, position, length, mask, "X" or nothing.
using StatusRowTexts = std::array<std::string, 6>;

/// The status table of a protocol while it is edited (`StatusGridRows`), and the grid `TDBList1` that shows it: which
/// row is selected and which rows are in sight. Entries stand without a gap from row 0; a row counts as unused when
/// its column 0 is empty. The protocol's own table is not touched.
class StatusGrid {
 public:
  static constexpr int kRows = 100;
  static constexpr int kColumns = 6;
  using Cell = std::optional<std::string>;

  /// Raises 9 outside the table.
  const Cell& At(int row, int column) const;
  void Set(int row, int column, Cell text);

  /// Number of the first unused row, or -1: the last row never counts as free, so that 99 entries fill the table.
  int FirstEmptyEntry();

  /// What stood from `row` on goes down by one; what stood in the last row is lost.
  void InsertEntry(int row, const StatusRowTexts& texts);
  void ReplaceEntry(int row, const StatusRowTexts& texts);
  void DeleteEntry(int row);

  /// Takes over the rows of a protocol.
  void Show(const StatusTable& table);
  /// Puts its rows in place of those of `table`.
  void PutInto(StatusTable& table) const;

  // The selection.
  int Bookmark() const { return bookmark_; }
  int Col() const { return col_; }
  void SetCol(int column) { col_ = column; }
  int FirstRow() const { return firstRow_; }         ///< first row in sight
  int Row() const { return bookmark_ - firstRow_; }  ///< of the selection within those in sight
  int VisibleRows() const { return visibleRows_; }
  /// How many rows the view has room for, 2 at least.
  void SetVisibleRows(int rows);
  /// Selects a row as a click or a key does: never below the first unused row, and scrolled into sight.
  void SelectRow(int row);
  /// Has the selection in sight.
  void ScrollToSelection();
  /// False if the grid does nothing on this key.
  bool TakesKey(int keyCode);

  /// Counts up with every change of a cell; a view compares it with the one it has drawn.
  int Revision() const { return revision_; }

 private:
  std::array<std::array<Cell, kColumns>, kRows> rows_;
  int bookmark_ = 0;
  int col_ = 0;
  int firstRow_ = 0;
  int visibleRows_ = 8;
  int revision_ = 0;
};
