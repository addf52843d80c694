#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <map>
#include <string>
#include <utility>
#include <vector>

#include "platform/canvas.h"

/// A canvas that keeps books instead of pixels: what lives, what is selected where, and what was drawn.
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
  std::map<DrawingHandle, std::string> alive;  ///< handle to its kind
  bool failing = false;                        ///< selections and deletions fail
  int contextsTaken = 0;

  DrawingHandle WindowContext() override {
    ++contextsTaken;
    return kWindow;
  }
  void ReleaseContext(DrawingHandle) override { --contextsTaken; }
  DrawingHandle CreateCompatibleContext() override { return Make("context"); }
  DrawingHandle CreateBitmap(int, int) override { return Make("bitmap"); }
  DrawingHandle CreatePen(Colour colour) override { return Paint("pen", colour); }
  DrawingHandle CreateBrush(Colour colour) override { return Paint("brush", colour); }
  DrawingHandle CreateFont(const FontShape& shape) override {
    fonts.push_back(shape);
    return Make("font");
  }
  DrawingHandle SelectObject(DrawingHandle context, DrawingHandle object) override {
    if (failing || alive.count(context) == 0 || (object != kStock && alive.count(object) == 0)) return 0;
    const std::string kind = object == kStock ? "bitmap" : alive[object];
    DrawingHandle& place = selected_[{context, kind}];
    const DrawingHandle previous = place == 0 ? kStock : place;
    place = object;
    return previous;
  }
  bool DeleteObject(DrawingHandle object) override {
    const auto isSelected = [&](const auto& entry) { return entry.second == object; };
    if (std::any_of(selected_.begin(), selected_.end(), isSelected)) return false;
    return Free(object);
  }
  bool DeleteContext(DrawingHandle context) override {
    if (context == kWindow) return !failing;
    if (!Free(context)) return false;
    std::erase_if(selected_, [&](const auto& entry) { return entry.first.first == context; });
    return true;
  }
  void Copy(DrawingHandle to, int x, int y, int width, int height, DrawingHandle, int, int) override {
    if (to == kWindow) shown.push_back({x, y, width, height});
  }
  void Ellipse(DrawingHandle context, int left, int top, int right, int bottom) override {
    const DrawingHandle brush = selected_[{context, "brush"}];
    const DrawingHandle pen = selected_[{context, "pen"}];
    EXPECT_EQ(colours_[brush], colours_[pen]);
    lamps.push_back({colours_[brush], {left, top, right, bottom}});
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

  DrawingHandle Make(const std::string& kind) {
    alive[++last_] = kind;
    return last_;
  }
  DrawingHandle Paint(const std::string& kind, Colour colour) {
    const DrawingHandle handle = Make(kind);
    colours_[handle] = colour;
    return handle;
  }
  bool Free(DrawingHandle handle) {
    const auto entry = alive.find(handle);
    if (failing || entry == alive.end()) return false;
    alive.erase(entry);
    return true;
  }

  DrawingHandle last_ = 100;
  std::map<std::pair<DrawingHandle, std::string>, DrawingHandle> selected_;
  std::map<DrawingHandle, Colour> colours_;
  Colour colour_{};
  TextAlign align_{};
};
