#include "ui/frm_sql_detail.h"

#include <QFrame>
#include <QLabel>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QVBoxLayout>

#include "ui/dialog_style.h"
#include "ui/fonts.h"

namespace {

struct TextBox {
  const char* name;
  const char* caption;
};

constexpr TextBox kTextBoxes[] = {{"tSqlData", "SQL:"}, {"tRxData", "RX:"}, {"tTxData", "TX:"}};

}  // namespace

frmSQLDetail::frmSQLDetail() {
  setObjectName("frmSQLDetail");
  setWindowTitle("SQL Detail");
  ApplyDialogStyle(*this);
  auto* frame = new QFrame(this);
  frame->setObjectName("iFrame");
  auto* boxes = new QVBoxLayout(frame);
  boxes->setContentsMargins(0, 0, 0, 0);
  for (const TextBox& box : kTextBoxes) {
    QLabel* caption = MakeCaption(box.caption, frame);
    caption->setObjectName("l");
    auto* text = new QPlainTextEdit(frame);
    text->setObjectName(box.name);
    text->setReadOnly(true);
    text->setFont(NumberFont(14));
    boxes->addWidget(caption);
    boxes->addWidget(text);
  }
  auto* close = new QPushButton("&Close", this);
  close->setObjectName("cmdClose");
  close->setDefault(true);
  connect(close, &QPushButton::clicked, this, &QDialog::accept);
  auto* column = new QVBoxLayout(this);
  column->addWidget(frame);
  column->addWidget(close, 0, Qt::AlignRight);
}
