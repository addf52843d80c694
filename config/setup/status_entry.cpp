#include "config/setup/status_entry.h"

#include <algorithm>

namespace {

constexpr std::string_view kMark = "X";

/// Fields by the grid's columns.
constexpr FieldId kFieldOfColumn[StatusGrid::kColumns] = {{Control::cbStatus}, {Control::cbDDE}, {Control::te},
                                                          {Control::te, 1},    {Control::te, 2}, {Control::cke}};

void SelectText(SetupField& list, const std::string& text) {
  const auto found = std::find(list.items.begin(), list.items.end(), text);
  if (found != list.items.end()) list.value = static_cast<int>(found - list.items.begin());
}

}  // namespace

StatusEntry::StatusEntry(SetupFields& fields, StatusGrid& grid) : fields_(fields), grid_(grid) {
  fields_.At(Control::cbStatus).items = StatusDefinitionList();
  fields_.At(Control::cbDDE).items = DdeFieldList();
  fields_.At(Control::fEntry).visible = false;
  EnableEntryExitTest();
}

bool StatusEntry::IsOpen() const { return fields_.At(Control::fEntry).visible; }

FieldId StatusEntry::Open() {
  const int row = grid_.Bookmark();
  fields_.At(Control::fEntry).visible = true;
  SetupEntryMode(true);
  StatusRowTexts texts;
  bool rowEmpty = true;
  for (int column = 0; column < StatusGrid::kColumns; ++column) {
    std::string& text = texts[static_cast<std::size_t>(column)];
    text = grid_.At(row, column).value_or("");
    if (!grid_.At(row, column)) grid_.Set(row, column, "");
    rowEmpty = rowEmpty && text.empty();
  }
  fields_.At(Control::cmdDelete).enabled = !texts[0].empty();
  if (!texts[0].empty()) SelectText(fields_.At(Control::cbStatus), texts[0]);
  if (!texts[1].empty()) SelectText(fields_.At(Control::cbDDE), texts[1]);
  for (int i = 0; i < 3; ++i) {
    const std::string& text = texts[static_cast<std::size_t>(2 + i)];
    if (!text.empty()) fields_.At(Control::te, i).text = text;
  }
  fields_.At(Control::cke).value = texts[5] == kMark ? 1 : 0;
  for (Control list : {Control::cbStatus, Control::cbDDE}) {
    if (fields_.At(list).value < 0) fields_.At(list).value = 0;
  }
  if (rowEmpty) fields_.At(Control::cke).value = 1;
  EnableEntryExitTest();
  return kFieldOfColumn[std::clamp(grid_.Col(), 0, StatusGrid::kColumns - 1)];
}

void StatusEntry::cmdInsert() {
  Close();
  grid_.InsertEntry(grid_.Bookmark(), Texts());
  ClearEntryFields();
  grid_.ScrollToSelection();
}

void StatusEntry::cmdReplace() {
  Close();
  grid_.ReplaceEntry(grid_.Bookmark(), Texts());
  ClearEntryFields();
}

void StatusEntry::cmdDelete() {
  Close();
  grid_.DeleteEntry(grid_.Bookmark());
  ClearEntryFields();
}

void StatusEntry::cmdCancelEntry() {
  Close();
  ClearEntryFields();
}

void StatusEntry::EnableEntryExitTest() {
  const bool complete = !fields_.At(Control::te, 0).text.empty() && !fields_.At(Control::te, 1).text.empty() &&
                        fields_.At(Control::cbStatus).value >= 0 && fields_.At(Control::cbDDE).value >= 0;
  bool& insert = fields_.At(Control::cmdInsert).enabled;
  if (!complete || grid_.FirstEmptyEntry() >= 0) insert = complete;  // in a full table it stays as it was
  fields_.At(Control::cmdReplace).enabled = complete;
}

void StatusEntry::Close() {
  SetupEntryMode(false);
  fields_.At(Control::fEntry).visible = false;
}

void StatusEntry::SetupEntryMode(bool entering) {
  constexpr int kTrue = -1;
  for (Control control : {Control::fConnection, Control::cmdCancel, Control::cmdOk, Control::TDBList1}) {
    fields_.At(control).enabled = !entering;
  }
  // A check box holds 0 or 1, so this never enables it again; that is how the screen has always behaved.
  bool& commands = fields_.At(Control::cmdCommands).enabled;
  if (entering) commands = false;
  if (!entering && fields_.At(Control::ckBidirectional).value == kTrue) commands = true;
}

void StatusEntry::ClearEntryFields() {
  fields_.At(Control::cbStatus).value = -1;
  fields_.At(Control::cbDDE).value = -1;
  for (SetupField& text : fields_.Array(Control::te)) text.text.clear();
  fields_.At(Control::cke).value = 0;
  EnableEntryExitTest();
}

StatusRowTexts StatusEntry::Texts() const {
  const auto text = [this](int element) { return fields_.At(Control::te, element).text; };
  return {fields_.At(Control::cbStatus).Item(),
          fields_.At(Control::cbDDE).Item(),
          text(0),
          text(1),
          text(2),
          std::string(fields_.At(Control::cke).value != 0 ? kMark : "")};
}

const std::vector<std::string>& DdeFieldList() {
  static const std::vector<std::string> list = {"1 / MOTION",  "2 / MODE", "3 / UNITS", "0 / ERROR", "(WEIGHT)",
                                                "4 / STATUS1", "STATUS2",  "STATUS3",   "STATUS4",   "STATUS5",
                                                "STATUS6",     "STATUS7",  "STATUS8",   "STATUS9",   "INVALIDATE"};
  return list;
}

const std::vector<std::string>& StatusDefinitionList() {
  static const std::vector<std::string> list = {
      "LB",
      "KG",
      "Grams",
      "MilliGrams",
      "MicroGrams",
      "Metric Tons",
      "Tons",
      "Ounces",
      "Troy Ounces",
      "Penny Weight",
      "Pieces",
      "Custom Units1",
      "Custom Units2",
      "Decimal Place XXXX00",
      "Decimal Place XXXXX0",
      "Decimal Place XXXXXX",
      "Decimal Place XXXXX.X",
      "Decimal Place XXXX.XX",
      "Decimal Place XXX.XXX",
      "Decimal Place XX.XXXX",
      "Decimal Place X.XXXXX",
      "Gross Mode",
      "Net Mode",
      "Polarity Sign Positive +",
      "Polarity Sign Negative -",
      "Out Of Range",
      "Motion",
      "Stable",
      "Print Request",
      "Setpoint 1 Feeding",
      "Setpoint 2 Feeding",
      "Setpoint 3, Setpoint 1 Fast Feeding",
      "Setpoint 4, Setpoint 2 Fast Feeding",
      "Setpoint 1, Weight In Tolerance or Zero In Tolerance",
      "Setpoint 2, Weight In Tolerance",
      "Expand Data x10",
      "User1",
      "User2",
      "User3",
      "User4",
      "User5",
      "User6",
      "User7",
      "User8",
      "User9",
      "Gross <= Mask",
      "Gross => Mask",
      "Net <= Mask",
      "Net => Mask",
      "Invalidate",
      "ErrorMsg",
  };
  return list;
}
