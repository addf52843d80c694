#pragma once

#include <algorithm>
#include <deque>
#include <string>
#include <utility>
#include <vector>

#include "app/headless_forms.h"
#include "app/text_screen/text_screen.h"
#include "platform/text_terminal.h"

/// A terminal in memory.
class MemoryTerminal : public TextTerminal {
 public:
  MemoryTerminal(int rows, int columns) { Resize(rows, columns); }

  int puts = 0;
  std::deque<int> keys;

  void Resize(int rows, int columns) {
    columns_ = columns;
    lines_.assign(static_cast<std::size_t>(rows), std::string(static_cast<std::size_t>(columns), ' '));
    resized_ = true;
  }
  std::string Screen() const {
    std::string screen;
    for (const std::string& line : lines_) screen += line + "\n";
    return screen;
  }

  int Rows() const override { return static_cast<int>(lines_.size()); }
  int Columns() const override { return columns_; }
  bool TakeSize() override { return std::exchange(resized_, false); }
  void Clear() override {
    for (std::string& line : lines_) line.assign(line.size(), ' ');
  }
  void Put(int row, int column, std::string_view text, int width, Look) override {
    ++puts;
    if (row < 0 || row >= Rows() || column < 0) return;
    for (int i = 0; i < std::min(width, columns_ - column); ++i) {
      const auto at = static_cast<std::size_t>(i);
      lines_[static_cast<std::size_t>(row)][static_cast<std::size_t>(column) + at] = at < text.size() ? text[at] : ' ';
    }
  }
  void Redraw() override {}
  void Flush() override {}
  int ReadKey() override {
    if (keys.empty()) return Key::None;
    const int key = keys.front();
    keys.pop_front();
    return key;
  }

 private:
  std::vector<std::string> lines_;
  int columns_ = 0;
  bool resized_ = false;
};

class ScreenForm : public HeadlessMainForm {
 public:
  TextScreen* screen = nullptr;
  void DrawItem(int ch, int item) override { screen->DrawItem(ch, item); }
};
