#pragma once

#include <cstdint>
#include <string_view>

/// Handle of something the canvas holds: a context to draw on, or an object selected into one. 0 is none.
using DrawingHandle = std::int64_t;

struct Colour {
  std::uint8_t red, green, blue;
  friend bool operator==(const Colour&, const Colour&) = default;
};

/// Height and average width of the characters in pixels; weight 400 is normal, 700 bold.
struct FontShape {
  std::string_view family;
  int height;
  int width;
  int weight;
};

enum class TextAlign { Left, Right };

/// The window's surface and the off-screen surfaces beside it. Coordinates are pixels of the window's layout,
/// x to the right and y down; a rectangle holds its left and top edge and not its right and bottom edge.
class Canvas {
 public:
  virtual ~Canvas() = default;

  /// Takes the window's context, which is given back with `ReleaseContext`.
  virtual DrawingHandle WindowContext() = 0;
  virtual void ReleaseContext(DrawingHandle context) = 0;
  /// A context that draws on the bitmap selected into it.
  virtual DrawingHandle CreateCompatibleContext() = 0;

  virtual DrawingHandle CreateBitmap(int width, int height) = 0;
  /// A pen of one pixel.
  virtual DrawingHandle CreatePen(Colour colour) = 0;
  virtual DrawingHandle CreateBrush(Colour colour) = 0;
  virtual DrawingHandle CreateFont(const FontShape& shape) = 0;

  /// Puts the object in the place of the one of its kind and returns that; 0 if either handle is unknown.
  virtual DrawingHandle SelectObject(DrawingHandle context, DrawingHandle object) = 0;
  /// False if the handle is unknown or the object is selected into a context.
  virtual bool DeleteObject(DrawingHandle object) = 0;
  /// False if the handle is unknown. A context that was given back counts as deleted.
  virtual bool DeleteContext(DrawingHandle context) = 0;

  /// Copies a rectangle in one operation, in place of what was there.
  virtual void Copy(DrawingHandle to, int x, int y, int width, int height, DrawingHandle from, int fromX,
                    int fromY) = 0;
  /// Fills the ellipse in this rectangle with the selected brush, edge and all with the selected pen.
  virtual void Ellipse(DrawingHandle context, int left, int top, int right, int bottom) = 0;
  /// Texts leave what is under them visible between their strokes.
  virtual void SetTransparentBackground(DrawingHandle context) = 0;
  virtual void SetText(DrawingHandle context, Colour colour, TextAlign align) = 0;
  /// Writes one line of bytes with the selected font; `x` is its left or right end, `y` its upper edge.
  virtual void TextOut(DrawingHandle context, int x, int y, std::string_view text) = 0;
};
