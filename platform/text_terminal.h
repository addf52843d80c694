#pragma once

#include <string_view>

/// How a piece of text on a terminal looks. Colours only repeat what letters, words or reversed cells already say.
enum class Look {
  Plain,
  Faint,
  Strong,
  Bar,    ///< head and foot of the screen
  Title,  ///< above a column
  Name,   ///< what a device is called
  Green,
  Yellow,
  Blue,
  Magenta,
  Alarm,  ///< red and reversed
};

/// Keys that are no characters; characters come as their code.
namespace Key {
inline constexpr int None = 0;
inline constexpr int Interrupt = 3;  ///< Ctrl-C
inline constexpr int Up = 0x1001;
inline constexpr int Down = 0x1002;
inline constexpr int PageUp = 0x1003;
inline constexpr int PageDown = 0x1004;
inline constexpr int Home = 0x1005;
inline constexpr int End = 0x1006;
}  // namespace Key

/// A character terminal that holds one screen of text. Nothing is seen before `Flush`, and no operation ever waits
/// for the terminal: one that does not keep up is shown the newest state when it can take it.
class TextTerminal {
 public:
  virtual ~TextTerminal() = default;

  virtual int Rows() const = 0;
  virtual int Columns() const = 0;
  /// Takes over the terminal's present size; true if it has changed.
  virtual bool TakeSize() = 0;

  virtual void Clear() = 0;
  /// Writes `text` (UTF-8, or else Latin-1) into `width` columns from `row`, `column` (from 0): cut or filled with
  /// blanks. What lies outside the screen is left out.
  virtual void Put(int row, int column, std::string_view text, int width, Look look) = 0;
  /// Has the next `Flush` draw every cell anew, for a terminal that others have written on.
  virtual void Redraw() = 0;
  virtual void Flush() = 0;

  /// The next key pressed, `Key::None` if there is none.
  virtual int ReadKey() = 0;
};
