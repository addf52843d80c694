#pragma once

#include <string>
#include <vector>

#include "config/setup/fields.h"
#include "config/setup/status_grid.h"

/// The entry panel `fEntry`, which edits the selected row of the status grid. Works on the panel's fields alone.
class StatusEntry {
 public:
  /// Fills the two lists.
  StatusEntry(SetupFields& fields, StatusGrid& grid);

  /// Shows the panel with the selected row, as a double click or Return in the grid does. Returns the field that gets
  /// the focus, by the grid's column.
  FieldId Open();
  bool IsOpen() const;

  /// The four buttons. Each closes the panel; the focus goes back to the grid.
  void cmdInsert();
  void cmdReplace();
  void cmdDelete();
  void cmdCancelEntry();

  /// Switches `cmdInsert` and `cmdReplace`; runs at each change of an entry field, by whomever.
  void EnableEntryExitTest();

 private:
  void Close();
  void SetupEntryMode(bool entering);
  void ClearEntryFields();
  StatusRowTexts Texts() const;

  SetupFields& fields_;
  StatusGrid& grid_;
};

/// Items of `cbDDE` and `cbStatus`.
const std::vector<std::string>& DdeFieldList();
const std::vector<std::string>& StatusDefinitionList();
