#include "ui/program_style.h"

#include <QMenu>
#include <QMessageBox>

#include "ui/dialog_style.h"
#include "ui/magnification.h"

ProgramStyle::ProgramStyle() : QProxyStyle("Fusion") {}

int ProgramStyle::pixelMetric(PixelMetric metric, const QStyleOption* option, const QWidget* widget) const {
  const int length = QProxyStyle::pixelMetric(metric, option, widget);
  return length > 1 ? Magnified(length) : length;
}

/// Boxes and menus come from elsewhere, at any time.
void ProgramStyle::polish(QWidget* widget) {
  QProxyStyle::polish(widget);
  const bool ours = qobject_cast<QMessageBox*>(widget) != nullptr || qobject_cast<QMenu*>(widget) != nullptr;
  const QString sheet = ours ? DialogSheet() : QString();
  if (widget->styleSheet() != sheet && ours) widget->setStyleSheet(sheet);
}
