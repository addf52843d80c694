#include "ui/dialogs.h"

#include <QDialog>

#include "core/engine.h"
#include "core/fixed_tables.h"
#include "ui/dialog_style.h"
#include "ui/frm_detail.h"
#include "ui/frm_refresh.h"
#include "ui/frm_sql_detail.h"

Dialogs::Dialogs() = default;

Dialogs::~Dialogs() = default;

void Dialogs::Use(Engine& engine) {
  engine_ = &engine;
  detailView_ = std::make_unique<DetailView>(engine.tables);
}

void Dialogs::cmdDetail(int ch, const QWidget* owner) {
  if (open_) return;
  switch (detailView_->Open(ch)) {
    case DetailWindow::None:
      return;
    case DetailWindow::VirtualTerminal:
      return TellOfMissingTerminal(ch);
    case DetailWindow::Sql:
      if (!sqlDetail_) sqlDetail_ = std::make_unique<frmSQLDetail>();
      return Show(*sqlDetail_, owner);
    case DetailWindow::Device:
      if (!detail_) detail_ = std::make_unique<frmDetail>();
      detail_->Fill(*detailView_, ch + 1, engine_->tables.DebugMode == True);
      return Show(*detail_, owner);
  }
}

void Dialogs::cmdRefresh(const QWidget* owner) {
  if (open_) return;
  if (!refresh_) refresh_ = std::make_unique<frmRefresh>(*engine_);
  refresh_->Fill();
  Show(*refresh_, owner);
}

void Dialogs::Close() {
  if (open_) open_->reject();
}

void Dialogs::ShowDetail(int element, std::string_view text) {
  detailView_->Show(element, text);
  detail_->Take(*detailView_, element);
}

void Dialogs::ShowRate(int label, int ticksPerSecond) { refresh_->ShowRate(label, ticksPerSecond); }

void Dialogs::Show(QDialog& dialog, const QWidget* owner) {
  open_ = &dialog;
  QObject::connect(
      &dialog, &QDialog::finished, &dialog, [this] { TakeClosing(); }, Qt::SingleShotConnection);
  if (onOpen_) onOpen_(true);
  ShowAbove(dialog, owner);
}

void Dialogs::TakeClosing() {
  detailView_->Close();
  CloseRefresh(engine_->tables);
  open_ = nullptr;
  if (onOpen_) onOpen_(false);
}

/// The channel is set up for the terminal's front panel, which this program does not have.
void Dialogs::TellOfMissingTerminal(int ch) {
  engine_->notice.MessageBox("Virtual Vantor",
                             "The virtual terminal is not part of this program.\r\n\r\nTo see the detail of channel " +
                                 DisplayNumber(ch) + ", switch off \"Enable Virtual Vant\" in its setup.");
}
