#include "ui/background.h"

#include <QPainter>

#include "diagnostics/panel.h"
#include "ui/fonts.h"
#include "ui/frame.h"
#include "ui/logo.h"
#include "ui/palette.h"

namespace {

struct Heading {
  int item;
  const char* text;
};

constexpr Heading kLampHeadings[] = {{Item::Rx, "RX"},        {Item::Tx, "TX"},       {Item::Motion, "Motion"},
                                     {Item::Net, "Net mode"}, {Item::Units, "Units"}, {Item::Enabled, "Enabled"},
                                     {Item::Sql, "VantODBC"}, {Item::Error, "Error"}};

constexpr Heading kTextHeadings[] = {{Item::Description, "Device"},
                                     {Item::Gross, "Gross"},
                                     {Item::Tare, "Tare"},
                                     {Item::NetWeight, "Net"},
                                     {Item::StatusCaption, "Status"}};

/// Where the parts of the picture lie, taken from the cells, in the layout's pixels.
struct Picture {
  explicit Picture(const ScreenLayout& screen) : layout(screen) {
    top = RowTop(0);
    bottom = RowTop(kChannels);
    left = Column(Item::Rx).x - kMargin;
    trafficRight = Column(Item::Tx).x + layout.lampCellWidth + kMargin / 2;
    statusLeft = Column(Item::Motion).x - kMargin;
    numberRight = Column(Item::Description).x - 14;
    right = Column(Item::Error).x + layout.lampCellWidth + kMargin / 2;
  }

  const ItemColumn& Column(int item) const { return layout.columns[static_cast<std::size_t>(item)]; }
  /// The line between two rows; behind the last row the lower edge.
  int RowTop(int ch) const {
    const int overhang = (layout.rowPitch - layout.cellHeight) / 2;
    if (ch == kChannels) return RowTop(ch - 1) + layout.rowPitch;
    return PlaceOf(layout, ch, Item::Gross).y - overhang;
  }
  double Size(double at1024) const { return at1024 * layout.width / 1024.0; }

  static constexpr int kMargin = 8;
  const ScreenLayout& layout;
  int top, bottom, left, trafficRight, numberRight, statusLeft, right;
};

void DrawRows(QPainter& painter, const Picture& picture) {
  for (int ch = 0; ch < kChannels; ++ch) {
    const int top = picture.RowTop(ch);
    const int height = picture.RowTop(ch + 1) - top;
    const bool other = ch % 2 != 0;
    const QColor& lampField = other ? Palette::LampFieldOther : Palette::LampField;
    painter.fillRect(picture.left, top, picture.trafficRight - picture.left, height, lampField);
    painter.fillRect(picture.trafficRight, top, picture.statusLeft - picture.trafficRight, height,
                     other ? Palette::RowOther : Palette::Row);
    painter.fillRect(picture.statusLeft, top, picture.right - picture.statusLeft, height, lampField);
    if (ch % 4 == 0 && ch > 0) {
      painter.fillRect(picture.trafficRight, top, picture.statusLeft - picture.trafficRight, 1, Palette::RowRule);
    }
  }
}

void DrawChannelNumbers(QPainter& painter, const Picture& picture) {
  const ScreenLayout& layout = picture.layout;
  painter.setFont(TextFont(picture.Size(13), QFont::Bold));
  painter.setPen(Palette::ButtonGreyed);
  for (int ch = 0; ch < kChannels; ++ch) {
    const QString number = QString::number(ch + 1);
    const int width = painter.fontMetrics().horizontalAdvance(number);
    const int baseline = PlaceOf(layout, ch, Item::Description).y + layout.cellHeight - 3;  // that of the texts
    painter.drawText(picture.numberRight - width, baseline, number);
  }
}

/// A lamp that is off, under each place where a lit one is drawn.
void DrawWells(QPainter& painter, const Picture& picture) {
  const ScreenLayout& layout = picture.layout;
  painter.setPen(Qt::NoPen);
  for (int ch = 0; ch < kChannels; ++ch) {
    for (int item = Item::Rx; item <= Item::Error; ++item) {
      const CellPlace cell = PlaceOf(layout, ch, item);
      const int visibleBottom = std::min(layout.ellipseHeight, cell.height - 1);
      const QRectF lamp(cell.x + 1, cell.y + 1, layout.ellipseWidth - 1, visibleBottom - 1);
      painter.setBrush(Palette::LampRing);
      painter.drawEllipse(lamp);
      painter.setBrush(Palette::LampWell);
      painter.drawEllipse(lamp.adjusted(1, 1, -1, -1));
    }
  }
}

void DrawTextHeadings(QPainter& painter, const Picture& picture) {
  const ScreenLayout& layout = picture.layout;
  painter.setFont(TextFont(picture.Size(14), QFont::Bold));
  painter.setPen(Palette::Heading);
  const int height = layout.rowPitch + 6;
  for (const Heading& heading : kTextHeadings) {
    const ItemColumn& column = picture.Column(heading.item);
    const bool number = heading.item != Item::Description && heading.item != Item::StatusCaption;
    const int width = number ? layout.rightTextX : column.width;
    painter.drawText(QRect(column.x, picture.top - height, width, height),
                     Qt::AlignVCenter | (number ? Qt::AlignRight : Qt::AlignLeft), heading.text);
  }
  painter.drawText(
      QRect(picture.trafficRight, picture.top - height, picture.numberRight - picture.trafficRight, height),
      Qt::AlignVCenter | Qt::AlignRight, QString("No."));
}

/// Heads of the lamps stand upright over columns that are only as wide as a lamp.
void DrawLampHeadings(QPainter& painter, const Picture& picture) {
  painter.setFont(TextFont(picture.Size(12), QFont::DemiBold));
  painter.setPen(Palette::Heading);
  const int length = qRound(picture.Size(84));
  for (const Heading& heading : kLampHeadings) {
    const double middle = picture.Column(heading.item).x + 1 + (picture.layout.ellipseWidth - 1) / 2.0;
    painter.save();
    painter.translate(middle, picture.top - 6);
    painter.rotate(-90);
    painter.drawText(QRectF(0, -10, length, 20), Qt::AlignVCenter | Qt::AlignLeft, heading.text);
    painter.restore();
  }
}

void DrawTitle(QPainter& painter, const Picture& picture) {
  const double size = picture.Size(56);
  const double x = picture.left;
  const double y = picture.Size(24);
  DrawMark(painter, QRectF(x, y, size, size));
  const double textX = x + size + picture.Size(16);
  painter.setPen(Palette::HeadingStrong);
  painter.setFont(TextFont(picture.Size(38), QFont::Bold));
  painter.drawText(QPointF(textX, y + picture.Size(32)), "Tarvex");
  painter.setPen(Palette::Heading);
  painter.setFont(TextFont(picture.Size(15)));
  painter.drawText(QPointF(textX + 1, y + picture.Size(54)), kSubtitle);
}

void DrawSheetEdge(QPainter& painter, const Picture& picture) {
  painter.setBrush(Qt::NoBrush);
  painter.setPen(QPen(Palette::FrameEdge, 1));
  painter.drawRect(QRectF(picture.left - 0.5, picture.top - 0.5, picture.right - picture.left + 1,
                          picture.bottom - picture.top + 1));
}

}  // namespace

QImage DrawBackground(const ScreenLayout& layout, qreal scale) {
  QImage image((QSizeF(layout.width, layout.height) * scale).toSize(), QImage::Format_RGB32);
  QPainter painter(&image);
  painter.scale(scale, scale);
  const Picture picture(layout);
  DrawFrame(painter, {layout.width, layout.height}, picture.top);
  DrawRows(painter, picture);
  painter.setRenderHint(QPainter::Antialiasing);
  DrawSheetEdge(painter, picture);
  DrawWells(painter, picture);
  DrawChannelNumbers(painter, picture);
  DrawTextHeadings(painter, picture);
  DrawLampHeadings(painter, picture);
  DrawTitle(painter, picture);
  return image;
}
