#include "platform/curses/curses_terminal.h"

#define NCURSES_WIDECHAR 1
#include <ncurses.h>
#include <sys/ioctl.h>
#include <termios.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <csignal>
#include <cstdio>
#include <stdexcept>

#include "platform/curses/display_text.h"
#include "platform/curses/terminal_output.h"

namespace {

constexpr int kLongestWaitAtEnd = 500;  ///< milliseconds

/// A look in colours that the themes of terminals have made readable; -1 is the terminal's own colour.
struct LookRow {
  Look look;
  short foreground;
  short background;
  attr_t attributes;
  attr_t withoutColours;  ///< attributes on a terminal that does not have these colours
};

constexpr LookRow kLooks[] = {
    {Look::Plain, -1, -1, A_NORMAL, A_NORMAL},
    {Look::Faint, -1, -1, A_DIM, A_DIM},
    {Look::Strong, -1, -1, A_BOLD, A_BOLD},
    {Look::Bar, 252, 238, A_NORMAL, A_REVERSE},
    {Look::Title, -1, -1, A_DIM | A_UNDERLINE, A_UNDERLINE},
    {Look::Name, COLOR_CYAN, -1, A_NORMAL, A_NORMAL},
    {Look::Green, COLOR_GREEN, -1, A_NORMAL, A_NORMAL},
    {Look::Yellow, COLOR_YELLOW, -1, A_NORMAL, A_NORMAL},
    {Look::Blue, COLOR_BLUE, -1, A_BOLD, A_NORMAL},
    {Look::Magenta, COLOR_MAGENTA, -1, A_NORMAL, A_NORMAL},
    {Look::Alarm, COLOR_WHITE, COLOR_RED, A_BOLD, A_REVERSE},
};

struct KeyRow {
  int code;
  int key;
};

constexpr KeyRow kKeys[] = {
    {KEY_UP, Key::Up},          {KEY_DOWN, Key::Down}, {KEY_PPAGE, Key::PageUp},
    {KEY_NPAGE, Key::PageDown}, {KEY_HOME, Key::Home}, {KEY_END, Key::End},
};

short PairOf(Look look) { return static_cast<short>(static_cast<int>(look) + 1); }

bool HasColours(const LookRow& row) { return has_colors() && row.foreground < COLORS && row.background < COLORS; }

attr_t AttributesOf(Look look) {
  const auto* row =
      std::find_if(std::begin(kLooks), std::end(kLooks), [&](const LookRow& each) { return each.look == look; });
  if (!HasColours(*row)) return row->withoutColours;
  return row->attributes | static_cast<attr_t>(COLOR_PAIR(PairOf(look)));
}

/// Raw mode of the terminal at standard input, given back at the end.
class RawInput {
 public:
  RawInput() {
    if (tcgetattr(STDIN_FILENO, &before_) != 0) return;
    termios raw = before_;
    cfmakeraw(&raw);
    known_ = tcsetattr(STDIN_FILENO, TCSANOW, &raw) == 0;
  }
  ~RawInput() {
    if (known_) tcsetattr(STDIN_FILENO, TCSADRAIN, &before_);
  }
  RawInput(const RawInput&) = delete;
  RawInput& operator=(const RawInput&) = delete;

 private:
  termios before_{};
  bool known_ = false;
};

}  // namespace

class CursesTerminal::Impl {
 public:
  Impl();
  ~Impl();
  Impl(const Impl&) = delete;
  Impl& operator=(const Impl&) = delete;

  TerminalOutput output;
  WINDOW* keys = nullptr;  ///< never seen: reading keys from the screen itself would draw it

 private:
  RawInput raw_;
  std::FILE* buffer_ = nullptr;
  SCREEN* screen_ = nullptr;
};

CursesTerminal::Impl::Impl() {
  std::signal(SIGWINCH, SIG_IGN);  // the size is asked for: ncurses would ask its buffer, which has none
  buffer_ = fdopen(dup(output.Buffer()), "w");
  if (buffer_ != nullptr) screen_ = newterm(nullptr, buffer_, stdin);
  if (screen_ == nullptr) {
    if (buffer_ != nullptr) std::fclose(buffer_);
    throw std::runtime_error("The terminal is of an unknown kind: check TERM");
  }
  curs_set(0);
  keys = newpad(1, 1);
  keypad(keys, TRUE);
  nodelay(keys, TRUE);
  leaveok(stdscr, TRUE);
  typeahead(-1);  // a key pressed does not hold up the picture
  if (has_colors()) {
    start_color();
    use_default_colors();
    for (const LookRow& row : kLooks) {
      if (HasColours(row)) init_pair(PairOf(row.look), row.foreground, row.background);
    }
  }
}

CursesTerminal::Impl::~Impl() {
  delwin(keys);
  endwin();
  output.Finish(kLongestWaitAtEnd);
  delscreen(screen_);
  std::fclose(buffer_);
  std::signal(SIGWINCH, SIG_DFL);
}

bool CursesTerminal::IsThere() { return isatty(STDIN_FILENO) == 1 && isatty(STDOUT_FILENO) == 1; }

CursesTerminal::CursesTerminal() : impl_(std::make_unique<Impl>()) { TakeSize(); }

CursesTerminal::~CursesTerminal() = default;

int CursesTerminal::Rows() const { return getmaxy(stdscr); }

int CursesTerminal::Columns() const { return getmaxx(stdscr); }

bool CursesTerminal::TakeSize() {
  winsize size{};
  if (ioctl(STDOUT_FILENO, TIOCGWINSZ, &size) != 0 || size.ws_row == 0 || size.ws_col == 0) return false;
  if (size.ws_row == Rows() && size.ws_col == Columns()) return false;
  resizeterm(size.ws_row, size.ws_col);
  clearok(stdscr, TRUE);
  return true;
}

void CursesTerminal::Clear() { werase(stdscr); }

void CursesTerminal::Put(int row, int column, std::string_view text, int width, Look look) {
  width = std::min(width, Columns() - column);
  if (row < 0 || row >= Rows() || column < 0 || width <= 0) return;
  const std::wstring shown = DisplayText(text, width);
  wattrset(stdscr, static_cast<int>(AttributesOf(look)));
  mvwaddnwstr(stdscr, row, column, shown.data(), static_cast<int>(shown.size()));
}

void CursesTerminal::Redraw() { clearok(stdscr, TRUE); }

void CursesTerminal::Flush() {
  if (!impl_->output.Behind()) wrefresh(stdscr);
  impl_->output.Send();
}

int CursesTerminal::ReadKey() {
  const int code = wgetch(impl_->keys);
  if (code == ERR) return Key::None;
  const auto* row =
      std::find_if(std::begin(kKeys), std::end(kKeys), [&](const KeyRow& each) { return each.code == code; });
  return row == std::end(kKeys) ? code : row->key;
}
