#include "app/text_screen/text_screen.h"

#include <algorithm>
#include <cctype>
#include <utility>

#include "app/text_screen/cells.h"
#include "app/text_screen/one_line.h"
#include "core/channel_state.h"
#include "core/fixed_tables.h"
#include "diagnostics/row_tone.h"

namespace {

constexpr int kHeadLines = 2;
constexpr int kTallScreen = 20;  ///< lines from which on a message may take two
constexpr std::size_t kGap = 3;  ///< blanks between the parts of the head
constexpr int kOutOfSight = -1;
constexpr int kNoTone = -1;

constexpr std::string_view kKeyHints[] = {"q Quit", "a All channels", "l Lamps", "r Repaint"};
constexpr std::string_view kScrollHint = "Up Down PgUp PgDn";
constexpr std::string_view kLampLegend =
    "Lamps: R receiving, T sending, M motion, N net, U primary units, E enabled, S database, ! error";
constexpr std::string_view kQuitQuestion = " Shut Off Tarvex Manager?   y Yes   any other key No";

/// Takes what fits into `width` columns off the front of `text`, up to the last blank in there.
std::string TakeLine(std::string& text, std::size_t width) {
  std::size_t length = text.size();
  if (length > width) {
    const std::size_t blank = text.rfind(' ', width);
    length = blank == std::string::npos || blank == 0 ? width : blank;
  }
  std::string line = text.substr(0, length);
  text.erase(0, std::max(length, text.find_first_not_of(' ', length)));
  return line;
}

/// Appends `part` behind a gap if the line still fits into `width` columns.
void AppendIfItFits(std::string& line, std::string_view part, int width) {
  const std::size_t gap = line.empty() ? 1 : kGap;
  if (line.size() + gap + part.size() > static_cast<std::size_t>(std::max(width, 0))) return;
  line.append(gap, ' ').append(part);
}

}  // namespace

TextScreen::TextScreen(Tables& tables, System& system, TextTerminal& terminal, std::string place,
                       std::function<void()> quit)
    : tables_(tables), system_(system), terminal_(terminal), place_(std::move(place)), quit_(std::move(quit)) {
  rowOf_.fill(kOutOfSight);
}

void TextScreen::SetRevision(std::string_view text) {
  revision_ = text;
  arranged_ = false;
}

void TextScreen::ShowMessage(std::string_view text) {
  message_ = system_.DateTimeText().substr(11) + "  " + OnOneLine(text);
  if (arranged_) DrawFoot();
}

void TextScreen::Serve() {
  for (int key = terminal_.ReadKey(); key != Key::None; key = terminal_.ReadKey()) TakeKey(key);
  if (terminal_.TakeSize() || !arranged_ || ShownChannels(tables_, showAll_) != shown_) Arrange();
  if (rate_.Update(tables_.StreamsDecoded, system_.WallSeconds())) DrawHead();
}

void TextScreen::TakeKey(int key) {
  if (question_ == Question::Quit) {
    question_ = Question::None;
    DrawFoot();
    if (key == 'y' || key == 'Y' || key == Key::Interrupt) quit_();
    return;
  }
  const int page = std::max(1, window_.Height());
  const int everything = kChannels;
  switch (key < 0x80 ? std::tolower(key) : key) {
    case Key::Interrupt:
      return quit_();
    case 'q':
      question_ = Question::Quit;
      return DrawFoot();
    case 'a':
      showAll_ = !showAll_;
      arranged_ = false;
      return;
    case 'l':
      return ShowMessage(kLampLegend);
    case 'r':
      terminal_.Redraw();
      arranged_ = false;
      return;
    case Key::Up:
      return Scroll(-1);
    case Key::Down:
      return Scroll(1);
    case Key::PageUp:
      return Scroll(-page);
    case Key::PageDown:
      return Scroll(page);
    case Key::Home:
      return Scroll(-everything);
    case Key::End:
      return Scroll(everything);
    default:
      return;
  }
}

void TextScreen::Scroll(int rows) {
  const int before = window_.First();
  window_.Move(rows);
  if (window_.First() != before) arranged_ = false;
}

void TextScreen::Arrange() {
  arranged_ = true;
  layout_ = TextLayoutFor(terminal_.Columns());
  shown_ = ShownChannels(tables_, showAll_);
  list_.clear();
  for (int ch = 0; ch < kChannels; ++ch) {
    if (shown_[static_cast<std::size_t>(ch)]) list_.push_back(ch);
  }
  window_.Fit(static_cast<int>(list_.size()), terminal_.Rows() - kHeadLines - 1 - MessageLines());
  rowOf_.fill(kOutOfSight);
  toneOf_.fill(kNoTone);
  for (int row = window_.First(); row < window_.End(); ++row) {
    const int ch = list_[static_cast<std::size_t>(row)];
    rowOf_[static_cast<std::size_t>(ch)] = kHeadLines + row - window_.First();
  }
  DrawFrame();
  ForceRepaint(tables_);
}

void TextScreen::DrawFrame() {
  terminal_.Clear();
  DrawHead();
  terminal_.Put(1, layout_.number.column, " #", layout_.number.width, Look::Title);
  for (int item = 0; item < Item::Count; ++item) {
    const TextCell& place = layout_.cell[static_cast<std::size_t>(item)];
    const std::string title(ColumnTitle(item));
    const auto width = static_cast<std::size_t>(place.width);
    const bool pad = place.align == Align::Right && title.size() < width;
    terminal_.Put(1, place.column, pad ? std::string(width - title.size(), ' ') + title : title, place.width,
                  Look::Title);
  }
  for (int ch = 0; ch < kChannels; ++ch) {
    if (RowOf(ch) == kOutOfSight) continue;
    const std::string number = DisplayNumber(ch);
    terminal_.Put(RowOf(ch), layout_.number.column, number.size() < 2 ? " " + number : number, layout_.number.width,
                  Look::Faint);
  }
  if (list_.empty()) DrawEmptyPlant();
  DrawFoot();
}

void TextScreen::DrawHead() {
  const int columns = terminal_.Columns();
  const std::string state =
      CountText(CountChannels(tables_), rate_.PerSecond()) + "   " + system_.DateTimeText().substr(11) + " ";
  const int stateWidth = static_cast<int>(state.size());
  const int nameWidth = std::max(0, columns - stateWidth);
  std::string name = " Tarvex Manager";
  if (tables_.DebugMode == True) AppendIfItFits(name, "DEBUG", nameWidth - 1);
  AppendIfItFits(name, place_, nameWidth - 1);
  AppendIfItFits(name, revision_, nameWidth - 1);
  terminal_.Put(0, 0, name, nameWidth - 1, Look::Bar);
  terminal_.Put(0, nameWidth - 1, " ", 1, Look::Bar);
  terminal_.Put(0, nameWidth, state, stateWidth, Look::Bar);
}

int TextScreen::MessageLines() const { return terminal_.Rows() >= kTallScreen ? 2 : 1; }

void TextScreen::DrawFoot() {
  const int columns = terminal_.Columns();
  const int line = terminal_.Rows() - 1;
  std::string message = message_;
  for (int i = MessageLines(); i > 0; --i) {
    const std::string text = TakeLine(message, static_cast<std::size_t>(std::max(1, columns - 2)));
    terminal_.Put(line - i, 0, " " + text, columns, Look::Yellow);
  }
  if (question_ == Question::Quit) return terminal_.Put(line, 0, kQuitQuestion, columns, Look::Alarm);

  const int rows = static_cast<int>(list_.size());
  std::string keys;
  if (window_.Height() < rows) {
    keys =
        " " + std::to_string(window_.First() + 1) + "-" + std::to_string(window_.End()) + " of " + std::to_string(rows);
    AppendIfItFits(keys, kScrollHint, columns);
  }
  for (const std::string_view hint : kKeyHints) AppendIfItFits(keys, hint, columns);
  terminal_.Put(line, 0, keys, columns, Look::Bar);
}

void TextScreen::DrawEmptyPlant() {
  const int columns = terminal_.Columns();
  terminal_.Put(kHeadLines + 1, 4, "No channel is enabled. Enable one in its channel file and start again;",
                columns - 4, Look::Plain);
  terminal_.Put(kHeadLines + 2, 4, "key a shows all channels.", columns - 4, Look::Plain);
}

void TextScreen::DrawItem(int ch, int item) {
  if (tables_.GdiEnabled == False || tables_.ScreenPainted == False || RowOf(ch) == kOutOfSight) return;
  if (tables_.ChanDirty[item][ch] == False) return;

  const TextCell& place = layout_.cell[static_cast<std::size_t>(item)];
  const bool rate = item == Item::StatusCaption && tables_.DebugMode == True;
  const std::string text = FitCell(rate ? RepaintText(ch) : CellText(tables_, ch, item), item, place);
  terminal_.Put(RowOf(ch), place.column, "", place.width, Look::Plain);
  const int length = std::min(place.width, static_cast<int>(text.size()));
  terminal_.Put(RowOf(ch), place.column, text, length, LookOf(tables_, ch, item));
  tables_.ChanDirty[item][ch] = False;

  // The looks of the texts follow the state of the row: they are drawn anew when it changes.
  const int tone = 2 * static_cast<int>(ToneOf(tables_, ch)) + (tables_.ChanIndicator[Item::Net][ch] == True ? 1 : 0);
  if (std::exchange(toneOf_[static_cast<std::size_t>(ch)], tone) == tone) return;
  for (int other = Item::Description; other <= Item::StatusCaption; ++other) {
    if (other != item) tables_.ChanDirty[other][ch] = True;
  }
}

std::string TextScreen::RepaintText(int ch) {
  return std::string(repaints_[static_cast<std::size_t>(ch)].Count(system_.WallSeconds()));
}
