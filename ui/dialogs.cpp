#include "ui/dialogs.h"

#include <QDialog>

#include "core/engine.h"
#include "terminal/virtual_terminal.h"
#include "ui/dialog_style.h"
#include "ui/frm_detail.h"
#include "ui/frm_refresh.h"
#include "ui/frm_sql_detail.h"
#include "ui/frm_vantor.h"

Dialogs::Dialogs() = default;

Dialogs::~Dialogs() = default;

void Dialogs::Use(Engine& engine, VirtualTerminal& virtualTerminal) {
  engine_ = &engine;
  virtualTerminal_ = &virtualTerminal;
  detailView_ = std::make_unique<DetailView>(engine.tables);
}

void Dialogs::cmdDetail(int ch, const QWidget* owner) {
  if (open_) return;
  switch (detailView_->Open(ch)) {
    case DetailWindow::None:
      return;
    case DetailWindow::VirtualTerminal:
      if (!vantor_) vantor_ = std::make_unique<VANTOR>(*virtualTerminal_);
      vantor_->Fill();
      return Show(*vantor_, owner);
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

void Dialogs::Unload() {
  Close();
  if (vantor_) virtualTerminal_->Unload();  // the window stays: one of its keys may have led here
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
