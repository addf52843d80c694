#include "tools/replay/table_printer.h"

#include <algorithm>
#include <cstdio>
#include <iterator>
#include <utility>
#include <vector>

#include "protocol/number.h"
#include "tools/replay/json_lines.h"

namespace {

struct Column {
  const char* heading;
  std::size_t width;
  bool right;
};

constexpr Column kColumns[] = {
    {"tick", 8, true}, {"stream", 26, false}, {"gross", 9, true},     {"tare", 9, true},
    {"net", 9, true},  {"status", 12, false}, {"caption", 21, false},
};
constexpr std::size_t kColumnCount = std::size(kColumns);
constexpr int kOpcCmdStat = 6;
constexpr std::size_t kMargin = 9;  // notes stand under the stream

std::string Visible(unsigned char byte) {
  constexpr const char* kControls[] = {"NUL", "SOH", "STX", "ETX", "EOT", "ENQ", "ACK", "BEL", "BS",  "HT",  "LF",
                                       "VT",  "FF",  "CR",  "SO",  "SI",  "DLE", "DC1", "DC2", "DC3", "DC4", "NAK",
                                       "SYN", "ETB", "CAN", "EM",  "SUB", "ESC", "FS",  "GS",  "RS",  "US"};
  if (byte < std::size(kControls)) return std::string("<") + kControls[byte] + ">";
  return std::string(1, static_cast<char>(byte));
}

std::string Code(unsigned char byte) {
  char code[5];
  std::snprintf(code, sizeof code, "<%02X>", byte);
  return code;
}

/// A text of the system, in which control characters have no business.
std::string ShownText(std::string_view text) {
  std::string shown;
  for (char character : ToUtf8(text)) shown += Visible(static_cast<unsigned char>(character));
  return shown;
}

/// The first `width` characters of the cell, taken from it; a character of several bytes stays whole.
std::string TakePart(std::string& cell, std::size_t width) {
  std::size_t size = std::min(width, cell.size());
  while (size < cell.size() && (static_cast<unsigned char>(cell[size]) & 0xC0) == 0x80) ++size;
  std::string part = cell.substr(0, size);
  cell.erase(0, size);
  return part;
}

/// A row whose cells go on in further lines where they are too long.
void PrintRow(std::ostream& out, std::vector<std::string> cells) {
  do {
    std::string line;
    for (std::size_t index = 0; index < kColumnCount; ++index) {
      const auto& [heading, width, right] = kColumns[index];
      const std::string part = TakePart(cells[index], width);
      const std::string fill(width - std::min(width, part.size()), ' ');
      line += (right ? fill + part : part + fill) + (index + 1 < kColumnCount ? " " : "");
    }
    line.erase(line.find_last_not_of(' ') + 1);
    out << line << '\n';
  } while (std::any_of(cells.begin(), cells.end(), [](const std::string& cell) { return !cell.empty(); }));
}

void PrintNote(std::ostream& out, const std::string& text) { out << std::string(kMargin, ' ') << text << '\n'; }

std::string StatusWords(int status) {
  constexpr std::pair<int, const char*> kWords[] = {{StatusBit::OutOfRange, "range"},
                                                    {StatusBit::Motion, "motion"},
                                                    {StatusBit::NetMode, "net"},
                                                    {StatusBit::Pounds, "LB"},
                                                    {StatusBit::Offline, "offline"}};
  std::string text = std::to_string(status);
  for (const auto& [bit, word] : kWords) {
    if ((status & bit) != 0) text += std::string(" ") + word;
  }
  return text;
}

std::string Quoted(std::string_view bytes) { return "\"" + MakeVisible(bytes) + "\""; }

std::string OpcText(const OpcValue& value) {
  if (const auto* whole = std::get_if<std::int16_t>(&value)) return std::to_string(*whole);
  if (const auto* number = std::get_if<double>(&value))
    return std::string(GeneralText(Decimal::FromDouble(*number)).View());
  return {};
}

std::string StreamCell(const Tables& tables, int ch, const TickEvents& events) {
  switch (events.outcome) {
    case TickEvents::Outcome::Stream:
      return Quoted(tables.ChanStream[ch]);
    case TickEvents::Outcome::Partial:
      return "... " + Quoted(events.chunk);
    default:
      return {};
  }
}

}  // namespace

std::string MakeVisible(std::string_view bytes) {
  std::string text;
  for (unsigned char byte : bytes) text += byte < 127 ? Visible(byte) : Code(byte);
  return text;
}

void TablePrinter::TellSilentTicks() {
  if (silentTicks_ == 1) PrintNote(out_, "(one silent tick without a change)");
  if (silentTicks_ > 1) PrintNote(out_, "(" + std::to_string(silentTicks_) + " silent ticks without a change)");
  silentTicks_ = 0;
}

void TablePrinter::Print(const Replay& replay, const TickEvents& events) {
  if (!headed_) {
    std::vector<std::string> headings;
    for (const Column& column : kColumns) headings.push_back(column.heading);
    PrintRow(out_, headings);
    headed_ = true;
  }
  const Tables& t = replay.Store();
  const int ch = replay.Channel();
  std::vector<std::string> cells = {std::to_string(t.ScanTick), StreamCell(t, ch, events)};
  for (const std::string* text : {&t.ChanGross[ch], &t.ChanTare[ch], &t.ChanNet[ch]}) {
    cells.push_back(MakeVisible(*text));
  }
  cells.push_back(StatusWords(t.ChanStatusBits[ch]));
  cells.push_back(ShownText(t.ChanStatusText[ch]));
  std::string row;
  for (std::size_t index = 2; index < cells.size(); ++index) row += cells[index] + "\n";
  std::vector<std::string> notes;
  for (const TickEvents::LogLine& line : events.log) notes.push_back("log: " + ShownText(line.text));
  for (const std::string& text : events.portOut) notes.push_back("to the device: " + Quoted(text));
  if (events.answer) notes.push_back("to the automation client: CMDSTAT " + std::to_string(*events.answer));
  if (const auto answer = events.opcWrites.find(kOpcCmdStat); answer != events.opcWrites.end()) {
    notes.push_back("to the OPC server: CMDSTAT " + OpcText(answer->second));
  }
  if (events.error) {
    notes.push_back("fault " + std::to_string(events.error->Number()) + ": " + ShownText(events.error->Description()));
  }
  const bool eventful = events.outcome != TickEvents::Outcome::Silent || !notes.empty();
  if (!eventful && row == lastRow_) {
    ++silentTicks_;
    return;
  }
  TellSilentTicks();
  lastRow_ = row;
  PrintRow(out_, cells);
  for (const std::string& note : notes) PrintNote(out_, note);
}
