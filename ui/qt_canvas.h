#pragma once

#include <QFont>
#include <QFontMetricsF>
#include <QImage>
#include <QRect>
#include <functional>
#include <optional>
#include <unordered_map>
#include <variant>
#include <vector>

#include "platform/canvas.h"

/// The weigh screen's canvas on Qt's raster images. The window's surface is an image that holds what the window
/// shows; each cell is composed in an image of its own and copied there in one operation. Images are in device
/// pixels, so that the picture is sharp at every scale factor; coordinates are the layout's.
class QtCanvas : public Canvas {
 public:
  /// `onWindowChanged` gets the part of the window that a copy has changed, in the layout's pixels.
  explicit QtCanvas(std::function<void(const QRect&)> onWindowChanged);

  /// Puts `picture` on the window's surface; `scale` is its device pixels to a pixel of the layout. Cells that were
  /// made on an earlier picture must have been released.
  void SetPicture(const QImage& picture, qreal scale);
  const QImage& WindowImage() const { return window_; }
  qreal Scale() const { return scale_; }
  /// Contexts and objects that live.
  std::size_t Held() const { return contexts_.size() + objects_.size(); }

  DrawingHandle WindowContext() override;
  void ReleaseContext(DrawingHandle context) override;
  DrawingHandle CreateCompatibleContext() override;
  DrawingHandle CreateBitmap(int width, int height) override;
  DrawingHandle CreatePen(Colour colour) override;
  DrawingHandle CreateBrush(Colour colour) override;
  DrawingHandle CreateFont(const FontShape& shape) override;
  DrawingHandle SelectObject(DrawingHandle context, DrawingHandle object) override;
  bool DeleteObject(DrawingHandle object) override;
  bool DeleteContext(DrawingHandle context) override;
  void Copy(DrawingHandle to, int x, int y, int width, int height, DrawingHandle from, int fromX, int fromY) override;
  void Ellipse(DrawingHandle context, int left, int top, int right, int bottom) override;
  void SetTransparentBackground(DrawingHandle context) override;
  void SetText(DrawingHandle context, Colour colour, TextAlign align) override;
  void TextOut(DrawingHandle context, int x, int y, std::string_view text) override;

 private:
  struct Pen {
    Colour colour;
  };
  struct Brush {
    Colour colour;
  };
  /// A size of the letters, with its measures in device pixels.
  struct Letters {
    explicit Letters(const QFont& shape);

    QFont font;
    QFontMetricsF metrics;
    double above, below;  ///< what capitals need over the baseline, and "g" and "[" under it
  };
  struct LineFont {
    Letters full;
    std::optional<Letters> fitted{};  ///< the largest that are whole in a cell `fittedTo` high
    int fittedTo = 0;
  };
  using Object = std::variant<QImage, Pen, Brush, LineFont>;  // the index tells its kind
  static constexpr std::size_t kKinds = std::variant_size_v<Object>;

  struct Context {
    DrawingHandle selected[kKinds];
    Colour textColour{};
    TextAlign align = TextAlign::Left;
  };

  DrawingHandle Keep(Object object);
  Context* Find(DrawingHandle context);
  template <typename Kind>
  Kind* Selected(Context& context);
  QImage* ImageOf(DrawingHandle context);
  const QImage& CoverageOf(const QRect& ellipse, const QImage& surface);
  QSize Covered(const QImage& cell) const;
  static const Letters& FittedTo(LineFont& font, int height);
  QRect DevicePixels(int x, int y, int width, int height) const;

  std::function<void(const QRect&)> onWindowChanged_;
  QImage window_;
  qreal scale_ = 1;
  struct Coverage {
    QRect ellipse;
    QImage image;
  };
  std::vector<Coverage> coverages_;
  DrawingHandle lastHandle_;
  std::unordered_map<DrawingHandle, Context> contexts_;
  std::unordered_map<DrawingHandle, Object> objects_;
};
