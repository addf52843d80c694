#include "ui/magnified_window.h"

#include <QGridLayout>
#include <QRegularExpression>
#include <QSet>
#include <QWidget>
#include <functional>
#include <vector>

#include "ui/magnification.h"

namespace {

QSize MagnifiedSize(const QSize& size) {
  const auto side = [](int length) { return length >= QWIDGETSIZE_MAX ? length : Magnified(length); };
  return {side(size.width()), side(size.height())};
}

QMargins MagnifiedMargins(const QMargins& margins) {
  return {Magnified(margins.left()), Magnified(margins.top()), Magnified(margins.right()), Magnified(margins.bottom())};
}

/// How a window is laid out, as steps that put each part of it in place at the factor of the moment.
class LaidOut : public QObject {
 public:
  explicit LaidOut(QWidget& window) : QObject(&window) {
    const QList<QWidget*> inside = window.findChildren<QWidget*>();
    QSet<const QWidget*> managed;
    for (QLayout* layout : window.findChildren<QLayout*>()) Note(*layout, managed);
    Note(window, true);
    for (QWidget* widget : inside) Note(*widget, managed.contains(widget));
    OnMagnification(*this, [this] { Apply(); });
    if (Magnification() != 1) Apply();
  }

 private:
  void Note(QLayout& layout, QSet<const QWidget*>& managed) {
    for (int at = 0; at < layout.count(); ++at) {
      QLayoutItem* const item = layout.itemAt(at);
      if (item->widget() != nullptr) managed.insert(item->widget());
      if (QSpacerItem* const spacer = item->spacerItem()) Note(*spacer, layout);
    }
    const QMargins margins = layout.contentsMargins();
    steps_.push_back([&layout, margins] { layout.setContentsMargins(MagnifiedMargins(margins)); });
    auto* const grid = qobject_cast<QGridLayout*>(&layout);
    if (grid == nullptr) {
      const int spacing = layout.spacing();
      steps_.push_back([&layout, spacing] { layout.setSpacing(Magnified(spacing)); });
      return;
    }
    const int across = grid->horizontalSpacing(), down = grid->verticalSpacing();
    steps_.push_back([grid, across, down] {
      grid->setHorizontalSpacing(Magnified(across));
      grid->setVerticalSpacing(Magnified(down));
    });
    for (int column = 0; column < grid->columnCount(); ++column) {
      const int width = grid->columnMinimumWidth(column);
      if (width > 0) steps_.push_back([=] { grid->setColumnMinimumWidth(column, Magnified(width)); });
    }
  }
  void Note(QSpacerItem& spacer, QLayout& layout) {
    const QSize size = spacer.sizeHint();
    const QSizePolicy policy = spacer.sizePolicy();
    steps_.push_back([&spacer, &layout, size, policy] {
      spacer.changeSize(Magnified(size.width()), Magnified(size.height()), policy.horizontalPolicy(),
                        policy.verticalPolicy());
      layout.invalidate();
    });
  }
  void Note(QWidget& widget, bool managed) {
    if (!widget.styleSheet().isEmpty()) {
      steps_.push_back([&widget, sheet = widget.styleSheet()] { widget.setStyleSheet(MagnifiedSheet(sheet)); });
    }
    // Each widget by itself: below a style sheet a new font is not always handed down.
    if (widget.font().pixelSize() > 0) {
      steps_.push_back([&widget, pixels = widget.font().pixelSize()] {
        QFont font = widget.font();
        font.setPixelSize(Magnified(pixels));
        widget.setFont(font);
      });
    }
    const QSize least = widget.minimumSize(), most = widget.maximumSize();
    const bool limited = !least.isNull() || most != QSize(QWIDGETSIZE_MAX, QWIDGETSIZE_MAX);
    if (limited) {
      steps_.push_back([&widget, least, most] {
        widget.setMaximumSize(MagnifiedSize(most));
        widget.setMinimumSize(MagnifiedSize(least));
      });
    }
    const bool placedByHand =
        !managed && widget.parentWidget() != nullptr && widget.parentWidget()->layout() != nullptr;
    if (placedByHand) {
      steps_.push_back([&widget, place = widget.geometry()] {
        widget.setGeometry(Magnified(place.x()), Magnified(place.y()), Magnified(place.width()),
                           Magnified(place.height()));
      });
    }
  }
  void Apply() {
    for (const auto& step : steps_) step();
    auto& window = static_cast<QWidget&>(*parent());
    if (window.layout() != nullptr) window.layout()->activate();
    window.adjustSize();
  }

  std::vector<std::function<void()>> steps_;
};

}  // namespace

QString MagnifiedSheet(const QString& sheet) {
  static const QRegularExpression kLength("(\\d+)px");
  QString magnified;
  qsizetype end = 0;
  for (auto lengths = kLength.globalMatch(sheet); lengths.hasNext();) {
    const QRegularExpressionMatch length = lengths.next();
    magnified += sheet.mid(end, length.capturedStart() - end);
    magnified += QString("%1px").arg(Magnified(length.captured(1).toInt()));
    end = length.capturedEnd();
  }
  return magnified + sheet.mid(end);
}

void FollowMagnification(QWidget& window) { new LaidOut(window); }
