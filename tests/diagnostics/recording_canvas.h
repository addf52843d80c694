#pragma once

#include <array>
#include <map>
#include <set>
#include <string>
#include <vector>

#include "platform/canvas.h"

/// A canvas that keeps books instead of pixels: what lives, and what was drawn in which colour.
class RecordingCanvas : public Canvas {
 public:
  struct Text {
    int x, y;
    std::string text;
    Colour colour;
    TextAlign align;
    bool operator==(const Text&) const = default;
  };
  struct Lamp {
    Colour colour;
    std::array<int, 4> edges;  ///< left, top, right, bottom
  };

  std::vector<Text> texts;
  std::vector<Lamp> lamps;
  std::vector<std::array<int, 4>> shown;  ///< copies to the window: x, y, width, height
  std::vector<FontShape> fonts;
  std::set<DrawingHandle> alive;
  bool failing = false;  ///< selections and deletions fail
  int contextsTaken = 0;

  DrawingHandle WindowContext() override {
    ++contextsTaken;
    return kWindow;
  }
  void ReleaseContext(DrawingHandle) override { --contextsTaken; }
  DrawingHandle CreateCompatibleContext() override { return Make(); }
  DrawingHandle CreateBitmap(int, int) override { return Make(); }
  DrawingHandle CreatePen(Colour colour) override { return CreateBrush(colour); }
  DrawingHandle CreateBrush(Colour colour) override {
    paint_[Make()] = colour;
    return last_;
  }
  DrawingHandle CreateFont(const FontShape& shape) override {
    fonts.push_back(shape);
    return Make();
  }
  DrawingHandle SelectObject(DrawingHandle, DrawingHandle object) override {
    if (paint_.contains(object)) colour_ = paint_[object];
    return failing ? 0 : kStock;
  }
  bool DeleteObject(DrawingHandle object) override { return Free(object); }
  bool DeleteContext(DrawingHandle context) override { return context == kWindow ? !failing : Free(context); }
  void Copy(DrawingHandle to, int x, int y, int width, int height, DrawingHandle, int, int) override {
    if (to == kWindow) shown.push_back({x, y, width, height});
  }
  void Ellipse(DrawingHandle, int left, int top, int right, int bottom) override {
    lamps.push_back({colour_, {left, top, right, bottom}});
  }
  void SetTransparentBackground(DrawingHandle) override {}
  void SetText(DrawingHandle, Colour colour, TextAlign align) override {
    colour_ = colour;
    align_ = align;
  }
  void TextOut(DrawingHandle, int x, int y, std::string_view text) override {
    texts.push_back({x, y, std::string(text), colour_, align_});
  }

 private:
  static constexpr DrawingHandle kWindow = 1;
  static constexpr DrawingHandle kStock = 2;  // what a new context holds

  DrawingHandle Make() {
    alive.insert(++last_);
    return last_;
  }
  bool Free(DrawingHandle handle) { return !failing && alive.erase(handle) > 0; }

  DrawingHandle last_ = 100;
  std::map<DrawingHandle, Colour> paint_;
  Colour colour_{};
  TextAlign align_{};
};
