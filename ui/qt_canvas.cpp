#include "ui/qt_canvas.h"

#include <QFontMetricsF>
#include <QPainter>
#include <algorithm>
#include <cmath>
#include <cstring>

#include "platform/qt/text.h"
#include "ui/fonts.h"

namespace {

constexpr DrawingHandle kWindow = 1;
constexpr DrawingHandle kFirstStock = 2;  // what a new context holds of each kind: nothing to draw with
constexpr DrawingHandle kFirstOwn = 100;

constexpr double kSizeOfHeight = 13.0 / 16;  // the capitals of the large layout just fill their cells
constexpr double kWidthOfHeight = 0.395;     // the average character of a line of Arial, in parts of its height
constexpr qsizetype kLongestText = 400;      // characters; far more than the widest cell shows

QColor ToColour(Colour colour) { return {colour.red, colour.green, colour.blue}; }

bool IsNumber(std::string_view text) { return text.find_first_not_of("0123456789+-. ") == text.npos; }

bool HasAccents(std::string_view text) {
  return std::any_of(text.begin(), text.end(), [](char c) { return static_cast<unsigned char>(c) > 0x7f; });
}

/// Pixels of `area` of `from` to `at` of `to`, as far as both images reach.
void CopyPixels(QImage& to, QPoint at, const QImage& from, QRect area) {
  area &= from.rect();
  const QRect target = QRect(at, area.size()) & to.rect();
  if (target.isEmpty() || target.topLeft() != at) return;
  const auto bytes = static_cast<std::size_t>(target.width()) * sizeof(QRgb);
  const uchar* source = from.constScanLine(area.y()) + static_cast<std::size_t>(area.x()) * sizeof(QRgb);
  uchar* destination = to.scanLine(at.y()) + static_cast<std::size_t>(at.x()) * sizeof(QRgb);
  for (int line = 0; line < target.height(); ++line) {
    std::memcpy(destination, source, bytes);
    source += from.bytesPerLine();
    destination += to.bytesPerLine();
  }
}

/// As much of `colour` as `coverage` tells, into each pixel of `image`.
void BlendIn(QImage& image, const QImage& coverage, Colour colour) {
  const int ink[] = {colour.red, colour.green, colour.blue};
  const auto mixed = [](int under, int over, int share) { return (under * (255 - share) + over * share + 127) / 255; };
  const QRgb whole = qRgb(colour.red, colour.green, colour.blue);
  const int width = image.width();
  for (int y = 0; y < image.height(); ++y) {
    const uchar* const shares = coverage.constScanLine(y);
    auto* const pixels = reinterpret_cast<QRgb*>(image.scanLine(y));
    for (int x = 0; x < width; ++x) {
      if (shares[x] == 0) continue;
      const QRgb under = pixels[x];
      pixels[x] = shares[x] == 255
                      ? whole
                      : qRgb(mixed(qRed(under), ink[0], shares[x]), mixed(qGreen(under), ink[1], shares[x]),
                             mixed(qBlue(under), ink[2], shares[x]));
    }
  }
}

}  // namespace

QtCanvas::QtCanvas(std::function<void(const QRect&)> onWindowChanged)
    : onWindowChanged_(std::move(onWindowChanged)), lastHandle_(kFirstOwn) {}

void QtCanvas::SetPicture(const QImage& picture, qreal scale) {
  window_ = picture.convertToFormat(QImage::Format_RGB32);
  window_.setDevicePixelRatio(1);
  scale_ = scale;
  coverages_.clear();
}

DrawingHandle QtCanvas::WindowContext() { return kWindow; }

void QtCanvas::ReleaseContext(DrawingHandle) {}

DrawingHandle QtCanvas::CreateCompatibleContext() {
  Context context;
  for (std::size_t kind = 0; kind < kKinds; ++kind) {
    context.selected[kind] = kFirstStock + static_cast<DrawingHandle>(kind);
  }
  contexts_[++lastHandle_] = context;
  return lastHandle_;
}

DrawingHandle QtCanvas::Keep(Object object) {
  objects_.emplace(++lastHandle_, std::move(object));
  return lastHandle_;
}

DrawingHandle QtCanvas::CreateBitmap(int width, int height) {
  const auto devicePixels = [&](int length) { return static_cast<int>(std::ceil(length * scale_)); };
  return Keep(QImage(devicePixels(width), devicePixels(height), QImage::Format_RGB32));
}

DrawingHandle QtCanvas::CreatePen(Colour colour) { return Keep(Pen{colour}); }

DrawingHandle QtCanvas::CreateBrush(Colour colour) { return Keep(Brush{colour}); }

DrawingHandle QtCanvas::CreateFont(const FontShape& shape) {
  QFont font = TextFont(shape.height * kSizeOfHeight * scale_, QFont::Weight(shape.weight));
  font.setStretch(static_cast<int>(std::lround(100 * shape.width / (kWidthOfHeight * shape.height))));
  return Keep(LineFont{Letters(font)});
}

QtCanvas::Letters::Letters(const QFont& shape) : font(shape), metrics(font) {
  const QRectF ink = metrics.tightBoundingRect("Hg[_|j");
  above = -std::floor(ink.top());
  below = std::ceil(ink.bottom());
}

const QtCanvas::Letters& QtCanvas::FittedTo(LineFont& font, int height) {
  if (font.fitted && font.fittedTo == height) return *font.fitted;
  font.fittedTo = height;
  font.fitted = font.full;
  while (font.fitted->above + font.fitted->below > height && font.fitted->font.pixelSize() > 4) {
    QFont smaller = font.fitted->font;
    smaller.setPixelSize(smaller.pixelSize() - 1);
    font.fitted.emplace(smaller);
  }
  return *font.fitted;
}

/// Device pixels of a cell that are seen wherever on the window it stands.
QSize QtCanvas::Covered(const QImage& cell) const {
  const auto length = [&](int pixels) { return static_cast<int>(std::floor(std::floor(pixels / scale_) * scale_)); };
  return {length(cell.width()), length(cell.height())};
}

QtCanvas::Context* QtCanvas::Find(DrawingHandle context) {
  const auto entry = contexts_.find(context);
  return entry == contexts_.end() ? nullptr : &entry->second;
}

template <typename Kind>
Kind* QtCanvas::Selected(Context& context) {
  for (DrawingHandle handle : context.selected) {
    const auto entry = objects_.find(handle);
    if (entry == objects_.end()) continue;
    if (Kind* object = std::get_if<Kind>(&entry->second)) return object;
  }
  return nullptr;
}

DrawingHandle QtCanvas::SelectObject(DrawingHandle context, DrawingHandle object) {
  Context* const target = Find(context);
  if (target == nullptr) return 0;
  std::size_t kind = 0;
  if (const auto entry = objects_.find(object); entry != objects_.end()) {
    kind = entry->second.index();
  } else if (object >= kFirstStock && object < kFirstStock + static_cast<DrawingHandle>(kKinds)) {
    kind = static_cast<std::size_t>(object - kFirstStock);
  } else {
    return 0;
  }
  return std::exchange(target->selected[kind], object);
}

bool QtCanvas::DeleteObject(DrawingHandle object) {
  const auto holdsIt = [&](const auto& entry) {
    const Context& context = entry.second;
    return std::find(std::begin(context.selected), std::end(context.selected), object) != std::end(context.selected);
  };
  if (std::any_of(contexts_.begin(), contexts_.end(), holdsIt)) return false;
  return objects_.erase(object) > 0;
}

bool QtCanvas::DeleteContext(DrawingHandle context) { return context == kWindow || contexts_.erase(context) > 0; }

QImage* QtCanvas::ImageOf(DrawingHandle context) {
  if (context == kWindow) return &window_;
  Context* const held = Find(context);
  return held == nullptr ? nullptr : Selected<QImage>(*held);
}

/// Both edges are rounded on their own, so that a cell covers the same device pixels whenever it is copied.
QRect QtCanvas::DevicePixels(int x, int y, int width, int height) const {
  const auto edge = [&](int position) { return static_cast<int>(std::ceil(position * scale_)); };
  return {QPoint(edge(x), edge(y)), QPoint(edge(x + width) - 1, edge(y + height) - 1)};
}

void QtCanvas::Copy(DrawingHandle to, int x, int y, int width, int height, DrawingHandle from, int fromX, int fromY) {
  QImage* const target = ImageOf(to);
  const QImage* const source = ImageOf(from);
  if (target == nullptr || source == nullptr) return;
  const QRect targetArea = DevicePixels(x, y, width, height);
  const QRect sourceArea = DevicePixels(fromX, fromY, width, height);
  // Only on the window does a cell's place tell how many device pixels it covers.
  const QSize size = from == kWindow ? sourceArea.size() : targetArea.size();
  CopyPixels(*target, targetArea.topLeft(), *source, QRect(sourceArea.topLeft(), size));
  if (to == kWindow) onWindowChanged_({x, y, width, height});
}

void QtCanvas::Ellipse(DrawingHandle context, int left, int top, int right, int bottom) {
  Context* const held = Find(context);
  QImage* const image = held == nullptr ? nullptr : Selected<QImage>(*held);
  const Brush* const brush = held == nullptr ? nullptr : Selected<Brush>(*held);
  if (image == nullptr || brush == nullptr) return;
  // The pen has the brush's colour: the ellipse reaches to the outer edge of both.
  BlendIn(*image, CoverageOf(QRect(QPoint(left, top), QPoint(right - 1, bottom - 1)), *image), brush->colour);
}

/// How much an ellipse covers each pixel of a surface. There are few of them, and drawing one takes long.
const QImage& QtCanvas::CoverageOf(const QRect& ellipse, const QImage& surface) {
  for (const Coverage& known : coverages_) {
    if (known.ellipse == ellipse && known.image.size() == surface.size()) return known.image;
  }
  QImage coverage(surface.size(), QImage::Format_Grayscale8);
  coverage.fill(Qt::black);
  QPainter painter(&coverage);
  painter.scale(scale_, scale_);
  painter.setRenderHint(QPainter::Antialiasing);
  painter.setPen(Qt::NoPen);
  painter.setBrush(Qt::white);
  const QRectF seen(QPointF(0, 0), QSizeF(Covered(surface)) / scale_);  // a lamp is whole, never cut by its cell
  painter.drawEllipse(QRectF(ellipse) & seen);
  painter.end();
  return coverages_.emplace_back(Coverage{ellipse, coverage}).image;
}

void QtCanvas::SetTransparentBackground(DrawingHandle) {}  // texts never have another

void QtCanvas::SetText(DrawingHandle context, Colour colour, TextAlign align) {
  Context* const held = Find(context);
  if (held == nullptr) return;
  held->textColour = colour;
  held->align = align;
}

void QtCanvas::TextOut(DrawingHandle context, int x, int y, std::string_view text) {
  Context* const held = Find(context);
  QImage* const image = held == nullptr ? nullptr : Selected<QImage>(*held);
  LineFont* const font = held == nullptr ? nullptr : Selected<LineFont>(*held);
  if (image == nullptr || font == nullptr || text.empty()) return;
  QString line = ToVisibleText(text).left(kLongestText);
  // Numbers have nothing under the line and are drawn as large as they can be; all others keep their hooks.
  const QSize cell = Covered(*image);
  const bool number = IsNumber(text);
  const Letters& letters = number ? font->full : FittedTo(*font, cell.height());
  const double asLaidOut = std::round(y * scale_) + std::round(font->full.metrics.ascent());
  const double lowest = cell.height() - (number ? std::floor(letters.metrics.descent()) : letters.below);
  const double baseline = std::max(std::min(asLaidOut, lowest), letters.above);
  QPainter painter(image);
  painter.setFont(letters.font);
  painter.setPen(ToColour(held->textColour));
  if (held->align == TextAlign::Left) {
    painter.translate(x * scale_, baseline);
  } else {
    line = line.trimmed();
    const double right = std::min<double>(x * scale_, cell.width());
    const double width = letters.metrics.horizontalAdvance(line);
    painter.translate(right, baseline);
    // A number that is cut would be another number: one too long for its cell is drawn narrower.
    if (width > right) painter.scale(right / width, 1);
    painter.translate(-width, 0);
  }
  if (HasAccents(text)) {  // a capital's dots stand higher than there is room for
    const double above = -letters.metrics.tightBoundingRect(line).top();
    if (above > baseline) painter.scale(1, baseline / above);
  }
  painter.drawText(QPointF(0, 0), line);
}
