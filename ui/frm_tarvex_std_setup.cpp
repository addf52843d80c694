#include "ui/frm_tarvex_std_setup.h"

#include <QApplication>
#include <QBoxLayout>
#include <QCloseEvent>
#include <QGridLayout>
#include <QGroupBox>
#include <QLabel>
#include <QScopedValueRollback>
#include <QWheelEvent>

#include "platform/qt/on_display.h"
#include "platform/qt/text.h"
#include "ui/dialog_style.h"
#include "ui/fonts.h"
#include "ui/setup/setup_style.h"
#include "ui/setup/status_grid_view.h"
#include "ui/setup/stream_line.h"

namespace {

constexpr QSize kSize(788, 570);
constexpr int kFieldHeight = 22;
constexpr int kMiddleHeight = 240;
constexpr int kEntryWidth = 288;  // of the data fields, whose place the entry takes
constexpr int kLineMs = 100;
constexpr int kGap = 6;

QLabel* Text(const QString& text, QWidget* parent, Qt::Alignment alignment = Qt::AlignLeft | Qt::AlignVCenter) {
  QLabel* const label = MakeCaption(text, parent);
  label->setAlignment(alignment);
  return label;
}

QGridLayout* Grid(QWidget* parent, int gap = 3) {
  auto* const grid = new QGridLayout(parent);
  grid->setContentsMargins(0, 0, 0, 0);
  grid->setHorizontalSpacing(kGap);
  grid->setVerticalSpacing(gap);
  return grid;
}

/// The captions of a field with its lines as one.
QString CaptionsOf(const SetupField& field, const char* between = " ") {
  return ToText(field.row->captions).replace('\n', between);
}

QWidget* Sized(QWidget* field, int width, int height = kFieldHeight) {
  field->setFixedSize(width, height);
  return field;
}

/// Scrolls the grid by the wheel also while it is disabled, so that a fixed format can be read.
class WheelToGrid : public QObject {
 public:
  WheelToGrid(QWidget* panel, StatusGridView* grid) : QObject(panel), grid_(grid) { panel->installEventFilter(this); }

 protected:
  bool eventFilter(QObject*, QEvent* event) override {
    if (event->type() != QEvent::Wheel) return false;
    grid_->Scroll(static_cast<const QWheelEvent*>(event)->angleDelta().y() > 0 ? -3 : 3);
    return true;
  }

 private:
  StatusGridView* grid_;
};

}  // namespace

frmTarvexStdSetup::frmTarvexStdSetup() {
  setObjectName("frmTarvexStdSetup");
  setWindowTitle("Tarvex Setup");
  ApplySetupStyle(*this);
  connect(&lineTimer_, &QTimer::timeout, this, [this] { RefreshLine(); });
  // Where the keyboard goes decides which bytes of the stream are lit.
  connect(qApp, &QApplication::focusChanged, this, [this] { RefreshLine(); });
}

frmTarvexStdSetup::~frmTarvexStdSetup() = default;

void frmTarvexStdSetup::Use(Parts parts) {
  parts_.emplace(std::move(parts));
  parts_->model.OnChange([this] { Refresh(); });
}

void frmTarvexStdSetup::Build() {
  fields_ = std::make_unique<FieldWidgets>(parts_->model, [this](Control button) {
    button == Control::cmdOk ? parts_->setup.cmdOk() : parts_->setup.cmdCancel();
  });
  auto* const column = new QVBoxLayout(this);
  column->setContentsMargins(8, 6, 8, 6);
  column->setSpacing(4);
  column->addWidget(MakeHeading());
  column->addWidget(MakeConnection());
  column->addWidget(MakeMiddle());
  line_ = new StreamLine(this);
  column->addWidget(line_);
  column->addWidget(MakeFoot());
  column->addStretch();
  setFixedSize(kSize);
}

QWidget* frmTarvexStdSetup::MakeHeading() {
  auto* const strip = new QWidget(this);
  auto* const row = new QHBoxLayout(strip);
  row->setContentsMargins(2, 0, 2, 0);
  row->addWidget(fields_->Make(Control::lDEVICE, 0, strip));
  row->addWidget(fields_->Make(Control::lDebugMode, strip));
  row->addStretch();
  auto* const warnings = new QVBoxLayout;
  warnings->setSpacing(0);
  for (int line = 0; line < 2; ++line) {
    warnings->addWidget(fields_->Make(Control::lWarning, line, strip), 0, Qt::AlignHCenter);
  }
  row->addLayout(warnings);
  row->addStretch();
  row->addWidget(fields_->Make(Control::ckEnableDevice, strip));
  strip->setFixedHeight(28);
  return strip;
}

QGroupBox* frmTarvexStdSetup::MakePanel(Control control, QWidget* parent) {
  auto* const panel = new QGroupBox(ToText(parts_->model.Fields().At(control).row->caption).trimmed(), parent);
  fields_->Adopt(control, panel);
  return panel;
}

QWidget* frmTarvexStdSetup::MakeConnection() {
  QGroupBox* const panel = MakePanel(Control::fConnection, this);
  panel->setTitle("Connection");
  auto* const row = new QHBoxLayout(panel);
  row->setContentsMargins(8, 4, 8, 6);
  row->setSpacing(12);
  row->addWidget(MakeConnectionLists(panel));
  row->addWidget(MakeConnectionTexts(panel));
  row->addWidget(MakeConnectionChecks(panel));
  return panel;
}

QWidget* frmTarvexStdSetup::MakeConnectionLists(QWidget* parent) {
  auto* const part = new QWidget(parent);
  QGridLayout* const grid = Grid(part);
  struct Row {
    int list;
    Control label;  ///< `cb` for one whose caption is its own
  };
  int at = 0;
  for (const Row& row : {Row{0, Control::cb}, Row{1, Control::lCb1}, Row{2, Control::lCb2}, Row{3, Control::cb},
                         Row{4, Control::lCb4}}) {
    if (row.label == Control::cb) {
      grid->addWidget(Text(CaptionsOf(parts_->model.Fields().At(Control::cb, row.list)), part), at, 0);
    } else {
      auto* const captions = new QWidget(part);
      auto* const words = new QHBoxLayout(captions);
      words->setContentsMargins(0, 0, 0, 0);
      words->setSpacing(4);
      for (int word = 0; word < 2; ++word) words->addWidget(fields_->Make(row.label, word, captions));
      words->addStretch();
      grid->addWidget(captions, at, 0);
    }
    QWidget* const list = fields_->Make(Control::cb, row.list, part);
    if (row.list == 1) {
      auto* const both = new QHBoxLayout;
      both->setSpacing(kGap);
      both->addWidget(Sized(list, 76));
      portNote_ = Text({}, part);
      portNote_->setObjectName("lPortNote");
      portNote_->setFixedSize(126, kFieldHeight);
      portNote_->setWordWrap(true);
      both->addWidget(portNote_);
      grid->addLayout(both, at++, 1);
    } else {
      grid->addWidget(Sized(list, 208), at++, 1);
    }
  }
  grid->addWidget(Sized(fields_->Make(Control::tOtherDriver, part), 208), at, 1);
  return part;
}

QWidget* frmTarvexStdSetup::MakeConnectionTexts(QWidget* parent) {
  auto* const part = new QWidget(parent);
  QGridLayout* const grid = Grid(part);
  const SetupFields& fields = parts_->model.Fields();
  int row = 0;
  const auto add = [&](const QString& caption, QWidget* field) {
    grid->addWidget(Text(caption, part), row, 0);
    grid->addWidget(field, row++, 1);
  };
  for (Control text : {Control::tDeviceDesc, Control::tDeviceID}) {
    add(CaptionsOf(fields.At(text)), Sized(fields_->Make(text, part), 150));
  }
  for (int list : {5, 6}) {
    grid->addWidget(Text(CaptionsOf(fields.At(Control::cb, list)), part), row, 0);
    grid->addWidget(Sized(fields_->Make(Control::cb, list, part), 106), row++, 1, Qt::AlignLeft);
  }
  QLabel* const fixedFormat = Text("Fixed\nFormat", part);
  grid->addWidget(fixedFormat, row - 2, 1, 2, 1, Qt::AlignRight | Qt::AlignVCenter);
  auto* const numbers = new QWidget(part);
  QGridLayout* const trio = Grid(numbers, 0);
  const auto addNumber = [&](int column, const QString& caption, const QString& unit, QWidget* field) {
    trio->addWidget(Text(caption, numbers), 0, column);
    auto* const pair = new QHBoxLayout;
    pair->setSpacing(3);
    pair->addWidget(Sized(field, column == 2 ? 52 : 36));
    pair->addWidget(Text(unit, numbers));
    pair->addStretch();
    trio->addLayout(pair, 1, column);
  };
  addNumber(0, "Refresh:", "( mS )", fields_->Make(Control::tRefresh, numbers));
  auto* const delay = new QHBoxLayout;
  delay->setSpacing(3);
  trio->addWidget(fields_->Make(Control::ltTxDelay, 0, numbers), 0, 1);
  delay->addWidget(Sized(fields_->Make(Control::tTxDelay, numbers), 36));
  delay->addWidget(fields_->Make(Control::ltTxDelay, 1, numbers));
  trio->addLayout(delay, 1, 1);
  addNumber(2, "Timeout: ( 0=None )", "( mS )", fields_->Make(Control::tTimeout, numbers));
  grid->addWidget(numbers, row, 0, 1, 2);
  return part;
}

QWidget* frmTarvexStdSetup::MakeConnectionChecks(QWidget* parent) {
  auto* const part = new QWidget(parent);
  QGridLayout* const grid = Grid(part, 1);
  const Control checks[] = {Control::ckDDEServer,   Control::ckOPC,         Control::ckBidirectional,
                            Control::ckPollForData, Control::ckXONXOFF,     Control::ckEnableVVant,
                            Control::ckDataMap,     Control::ckAsciiLogFile};
  int at = 0;
  for (Control check : checks) {
    grid->addWidget(fields_->Make(check, part), at, 0);
    fields_->Find({check})->setFixedHeight(17);
    ++at;
  }
  grid->addWidget(Sized(fields_->Make(Control::tAsciiLogFileName, part), 150, 20), at, 0);
  return part;
}

QWidget* frmTarvexStdSetup::MakeMiddle() {
  auto* const middle = new QWidget(this);
  middle->setFixedHeight(kMiddleHeight);
  auto* const row = new QHBoxLayout(middle);
  row->setContentsMargins(0, 0, 0, 0);
  row->setSpacing(kGap);
  covered_ = new QWidget(middle);
  covered_->setFixedWidth(kEntryWidth);
  QSizePolicy policy = covered_->sizePolicy();
  policy.setRetainSizeWhenHidden(true);
  covered_->setSizePolicy(policy);
  auto* const under = new QVBoxLayout(covered_);
  under->setContentsMargins(0, 0, 0, 0);
  under->addWidget(MakeDataFields(covered_));
  row->addWidget(covered_);
  row->addWidget(MakeStatus(middle));
  // These lie over the others while they are open.
  const QSize room(kSize.width() - 16, kMiddleHeight);
  MakeEntry(middle)->setGeometry(0, 0, kEntryWidth, kMiddleHeight);
  MakeCommands(middle)->setGeometry(QRect(QPoint(), room));
  MakeOpc(middle)->setGeometry(QRect(QPoint(), room));
  return middle;
}

QWidget* frmTarvexStdSetup::MakeDataFields(QWidget* parent) {
  QGroupBox* const panel = MakePanel(Control::fDataField, parent);
  auto* const column = new QVBoxLayout(panel);
  column->setContentsMargins(8, 8, 8, 4);
  column->setSpacing(3);
  auto* const table = new QWidget(panel);
  QGridLayout* const grid = Grid(table, 2);
  const char* const headings[] = {"Field\nName", "Starting\nCharacter\nPosition", "Field\nLength", "Field\nEnable"};
  for (int at = 0; at < 4; ++at) {
    QLabel* const heading =
        Text(headings[at], table, at == 0 ? Qt::AlignLeft | Qt::AlignBottom : Qt::AlignHCenter | Qt::AlignBottom);
    heading->setProperty("small", true);
    grid->addWidget(heading, 0, at);
  }
  for (int row = 0; row < 4; ++row) {
    grid->addWidget(Text(CaptionsOf(parts_->model.Fields().At(Control::ck, row)), table), row + 1, 0);
    grid->addWidget(Sized(fields_->Make(Control::t, 2 * row, table), 60, 21), row + 1, 1, Qt::AlignHCenter);
    grid->addWidget(Sized(fields_->Make(Control::t, 2 * row + 1, table), 60, 21), row + 1, 2, Qt::AlignHCenter);
    grid->addWidget(fields_->Make(Control::ck, row, table), row + 1, 3, Qt::AlignHCenter);
    fields_->Find({Control::ck, row})->setFixedSize(20, 20);
  }
  column->addWidget(table);
  auto* const framing = new QWidget(panel);
  QGridLayout* const lines = Grid(framing, 2);
  for (int at = 8; at <= 10; ++at) {
    QLabel* const caption = Text(ToText(parts_->model.Fields().At(Control::t, at).row->captions), framing);
    caption->setProperty("small", true);
    lines->addWidget(caption, at, 0);
    lines->addWidget(Sized(fields_->Make(Control::t, at, framing), 60, 21), at, 1, Qt::AlignRight);
  }
  column->addWidget(framing);
  return panel;
}

QWidget* frmTarvexStdSetup::MakeStatus(QWidget* parent) {
  QGroupBox* const panel = MakePanel(Control::fStatus, parent);
  auto* const column = new QVBoxLayout(panel);
  column->setContentsMargins(6, 8, 6, 2);
  column->setSpacing(1);
  grid_ = new StatusGridView(parts_->model, panel);
  fields_->Adopt(Control::TDBList1, grid_);
  new WheelToGrid(panel, grid_);
  column->addWidget(grid_);
  QLabel* const note = Text("(Numeric Value Of 'DDE Field' (n/) Indicates OPC 'SCALESTAT' Bit.)", panel);
  note->setProperty("small", true);
  column->addWidget(note, 0, Qt::AlignHCenter);
  return panel;
}

QWidget* frmTarvexStdSetup::MakeEntry(QWidget* parent) {
  QGroupBox* const panel = MakePanel(Control::fEntry, parent);
  QGridLayout* const grid = Grid(panel, 3);
  grid->setContentsMargins(8, 2, 8, 6);
  grid->setColumnMinimumWidth(0, 108);
  QLabel* const title = Text(CaptionsOf(parts_->model.Fields().At(Control::fEntry)), panel);
  title->setProperty("small", true);
  grid->addWidget(title, 0, 0, 1, 4);
  int row = 1;
  const auto add = [&](const char* caption, QWidget* field, int width) {
    field->setFixedHeight(22);
    if (width > 0) field->setFixedWidth(width);
    grid->addWidget(Text(caption, panel), row, 0);
    grid->addWidget(field, row++, 1, 1, 3, width > 0 ? Qt::AlignLeft : Qt::Alignment());
  };
  add("Status Field", fields_->Make(Control::cbStatus, panel), 0);
  add("DDE Field", fields_->Make(Control::cbDDE, panel), 0);
  add("1st Char. Position", fields_->Make(Control::te, 0, panel), 70);
  add("Field Length", fields_->Make(Control::te, 1, panel), 70);
  add("Validation Bit Mask", fields_->Make(Control::te, 2, panel), 90);
  add("Enable", fields_->Make(Control::cke, panel), 22);
  auto* const buttons = new QHBoxLayout;
  buttons->setSpacing(4);
  for (Control button : {Control::cmdInsert, Control::cmdReplace, Control::cmdDelete, Control::cmdCancelEntry}) {
    buttons->addWidget(fields_->Make(button, panel));
  }
  grid->addLayout(buttons, row, 0, 1, 4);
  return panel;
}

QWidget* frmTarvexStdSetup::MakeCommands(QWidget* parent) {
  QGroupBox* const panel = MakePanel(Control::fCommand, parent);
  auto* const row = new QHBoxLayout(panel);
  row->setContentsMargins(8, 0, 8, 4);
  row->setSpacing(16);
  auto* const table = new QWidget(panel);
  QGridLayout* const grid = Grid(table, 0);
  const char* const headings[] = {"Enable\nCommand", "Command\nName", "OPC/DDE\n'CMD' Value",
                                  "Device Command\nDefinition"};
  for (int at = 0; at < 4; ++at) {
    QLabel* const heading = Text(headings[at], table, Qt::AlignLeft | Qt::AlignBottom);
    heading->setProperty("small", true);
    grid->addWidget(heading, 0, at);
  }
  for (int command = 0; command < 10; ++command) {
    grid->addWidget(fields_->Make(Control::ckCmd, command, table), command + 1, 0, Qt::AlignHCenter);
    fields_->Find({Control::ckCmd, command})->setFixedSize(20, 18);
    grid->addWidget(Sized(fields_->Make(Control::tCmdName, command, table), 150, 19), command + 1, 1);
    grid->addWidget(Sized(fields_->Make(Control::tCmdValue, command, table), 56, 19), command + 1, 2);
    grid->addWidget(Sized(fields_->Make(Control::tCmd, command, table), 190, 19), command + 1, 3);
  }
  row->addWidget(table);
  auto* const side = new QVBoxLayout;
  side->setSpacing(4);
  for (Control text : {Control::tCmdStart, Control::tCmdEnd}) {
    side->addWidget(Text(CaptionsOf(parts_->model.Fields().At(text), "\n"), panel));
    side->addWidget(Sized(fields_->Make(text, panel), 60));
  }
  side->addSpacing(8);
  side->addWidget(
      Text("Notes:\nUse The Tilde Character '~' \nTo Embed The Contents Of The \n'CMDPARM' Item Into a "
           "Command.",
           panel));
  side->addStretch();
  row->addLayout(side);
  row->addStretch();
  return panel;
}

QWidget* frmTarvexStdSetup::MakeOpc(QWidget* parent) {
  QGroupBox* const panel = MakePanel(Control::fOPC, parent);
  QGridLayout* const grid = Grid(panel, 2);
  grid->setContentsMargins(8, 0, 8, 4);
  const SetupFields& fields = parts_->model.Fields();
  int row = 0;
  for (Control text : {Control::tNodeName, Control::tServerName}) {
    grid->addWidget(Text(CaptionsOf(fields.At(text)), panel), row, 0);
    grid->addWidget(Sized(fields_->Make(text, panel), 380, 20), row++, 1, Qt::AlignLeft);
  }
  grid->addWidget(Text("OPC Server Tag Name", panel), row, 1, Qt::AlignLeft | Qt::AlignBottom);
  grid->addWidget(Text("Data Type", panel), row++, 2, Qt::AlignLeft | Qt::AlignBottom);
  for (int tag = 0; tag < 7; ++tag) {
    const QStringList captions = ToText(fields.At(Control::tOpcTag, tag).row->captions).split('\n');
    grid->addWidget(Text(captions.value(0), panel), row, 0);
    grid->addWidget(Sized(fields_->Make(Control::tOpcTag, tag, panel), 380, 20), row, 1, Qt::AlignLeft);
    grid->addWidget(Text(captions.value(1), panel), row++, 2);
  }
  grid->setColumnStretch(3, 1);
  return panel;
}

QWidget* frmTarvexStdSetup::MakeFoot() {
  auto* const foot = new QWidget(this);
  auto* const row = new QHBoxLayout(foot);
  row->setContentsMargins(0, 0, 0, 0);
  row->setSpacing(kGap);
  QGroupBox* const misc = MakePanel(Control::fMisc, foot);
  QGridLayout* const grid = Grid(misc, 1);
  grid->setContentsMargins(8, 2, 8, 3);
  grid->addWidget(fields_->Make(Control::ckUseLog, misc), 0, 0);
  grid->addWidget(fields_->Make(Control::cmdClear, misc), 0, 1);
  grid->addWidget(fields_->Make(Control::ckInteractiveDBErrors, misc), 1, 0, 1, 2);
  for (Control check : {Control::ckUseLog, Control::ckInteractiveDBErrors}) fields_->Find({check})->setFixedHeight(17);
  fields_->Find({Control::cmdClear})->setFixedHeight(19);
  row->addWidget(misc);
  row->addStretch();
  auto* const buttons = new QGridLayout;
  buttons->setSpacing(4);
  int column = 0;
  for (Control button : {Control::cmdCommands, Control::cmdOPC, Control::cmdDataMap}) {
    buttons->addWidget(fields_->Make(button, foot), 0, column++);
    fields_->Find({button})->setFixedSize(112, 25);
  }
  for (Control button : {Control::cmdOk, Control::cmdCancel}) {
    buttons->addWidget(fields_->Make(button, foot), 1, button == Control::cmdOk ? 1 : 2);
    fields_->Find({button})->setFixedSize(112, 25);
  }
  row->addLayout(buttons);
  return foot;
}

void frmTarvexStdSetup::Show() {
  if (!fields_) Build();
  setWindowTitle("Tarvex Setup  -  " + ToText(parts_->model.Fields().At(Control::lDEVICE).text));
  describedPort_ = -1;
  Refresh();
  lineTimer_.start(kLineMs);
  ShowAbove(*this, owner_);
  MoveOntoDisplay(*this);  // now with its frame
}

void frmTarvexStdSetup::Hide() {
  lineTimer_.stop();
  hide();
}

void frmTarvexStdSetup::BusyPointer(bool busy) { busy ? setCursor(Qt::WaitCursor) : unsetCursor(); }

void frmTarvexStdSetup::Refresh() {
  if (!fields_ || refreshing_) return;
  const QScopedValueRollback refreshing(refreshing_, true);
  fields_->Refresh();
  // What the entry panel covers may not have the keyboard.
  covered_->setVisible(!parts_->model.Fields().At(Control::fEntry).visible);
  grid_->Refresh();
  for (Control panel : {Control::fEntry, Control::fCommand, Control::fOPC}) {
    if (QWidget* const shown = fields_->Find({panel}); shown->isVisible()) shown->raise();
  }
  RefreshPort();
  RefreshLine();
  if (const auto wish = parts_->model.TakeFocusRequest()) {
    if (QWidget* const target = fields_->Find(*wish)) target->setFocus();
  }
}

/// The port is looked at when another one is chosen, which is when the answer can change what the user does.
void frmTarvexStdSetup::RefreshPort() {
  const SetupField& port = parts_->model.Fields().At(Control::cb, 1);
  portNote_->setEnabled(port.enabled);
  if (describedPort_ == port.value) return;
  describedPort_ = port.value;
  const QString note = port.value < 0 ? QString() : ToText(parts_->describePort(port.value + 1));
  portNote_->setText(note);
  portNote_->setToolTip(note);
}

void frmTarvexStdSetup::RefreshLine() {
  if (!fields_ || !isVisible()) return;
  const LiveLine line = parts_->setup.Look(FocusedField());
  line_->Show(line.stream, line.first, line.last, ToVisibleText(line.value), ToText(line.notice));
}

std::optional<FieldId> frmTarvexStdSetup::FocusedField() const {
  const QWidget* const focus = focusWidget();
  return focus == nullptr ? std::nullopt : parts_->model.Fields().Find(ToBytes(focus->objectName()));
}

void frmTarvexStdSetup::closeEvent(QCloseEvent* event) {
  event->ignore();
  reject();
}

/// The way out goes over the button that is there: an entry is left before the screen is.
void frmTarvexStdSetup::reject() {
  if (parts_->model.Entry().IsOpen()) return parts_->model.Press(Control::cmdCancelEntry);
  parts_->setup.cmdCancel();
}

/// While it is up the panel behind it takes no click, so it may not be put out of sight.
void frmTarvexStdSetup::changeEvent(QEvent* event) {
  QDialog::changeEvent(event);
  if (event->type() == QEvent::WindowStateChange && isMinimized()) showNormal();
}
