#pragma once

#include <array>
#include <functional>
#include <string>
#include <vector>

#include "app/text_screen/layout.h"
#include "app/text_screen/rows.h"
#include "diagnostics/cell_text.h"
#include "platform/system.h"
#include "platform/text_terminal.h"

/// The live weigh screen as text: a head with the state of the plant, a row a channel, the last message and the keys.
/// A cell is written only when its repaint flag in `ChanDirty` is set; that clears the flag.
class TextScreen {
 public:
  /// `place` names the plant in the head; `quit` is called when the operator ends the program.
  TextScreen(Tables& tables, System& system, TextTerminal& terminal, std::string place, std::function<void()> quit);

  /// Revision text of the head.
  void SetRevision(std::string_view text);
  /// Puts a message above the keys until the next one comes. Line breaks become blanks.
  void ShowMessage(std::string_view text);

  /// Takes keys and a new size of the terminal, and keeps head and foot up to date; for each tick of `GDITimer`.
  void Serve();
  /// Writes one cell, `item` 0 to 12, if its flag is set and its row is in sight.
  void DrawItem(int ch, int item);
  /// Brings what was written onto the terminal.
  void Flush() { terminal_.Flush(); }

 private:
  enum class Question { None, Quit };

  void TakeKey(int key);
  void Arrange();
  void DrawFrame();
  void DrawHead();
  void DrawFoot();
  int MessageLines() const;
  void DrawEmptyPlant();
  void Scroll(int rows);
  int RowOf(int ch) const { return rowOf_[static_cast<std::size_t>(ch)]; }
  std::string RepaintText(int ch);

  Tables& tables_;
  System& system_;
  TextTerminal& terminal_;
  std::string place_;
  std::function<void()> quit_;
  std::string revision_;
  std::string message_;

  TextLayout layout_;
  ChannelSet shown_;
  std::vector<int> list_;  ///< the shown channels in order
  RowWindow window_;
  std::array<int, kChannels> rowOf_{};  ///< line of a channel on the screen, -1 out of sight
  std::array<int, kChannels> toneOf_{};
  std::array<RepaintRate, kChannels> repaints_;
  StreamRate rate_;
  Question question_ = Question::None;
  bool showAll_ = false;
  bool arranged_ = false;
};
