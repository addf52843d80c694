#include "app/text_screen/cells.h"

#include <array>

#include "app/text_screen/layout.h"
#include "core/tables.h"
#include "diagnostics/cell_text.h"
#include "diagnostics/row_tone.h"

namespace {

struct Lamp {
  char letter;
  Look look;
};

constexpr std::array<Lamp, 8> kLamps = {{
    {'R', Look::Green},
    {'T', Look::Green},
    {'M', Look::Yellow},
    {'N', Look::Blue},
    {'U', Look::Blue},
    {'E', Look::Green},
    {'S', Look::Magenta},
    {'!', Look::Alarm},
}};

constexpr char kLampOff = '.';

struct ToneLooks {
  Look name;
  Look indicated;  ///< the weight that the device indicates: gross, in net mode net
  Look otherWeight;
  Look caption;
};

ToneLooks LooksOf(RowTone tone) {
  switch (tone) {
    case RowTone::Normal:
      return {Look::Name, Look::Strong, Look::Plain, Look::Plain};
    case RowTone::Waiting:
      return {Look::Name, Look::Plain, Look::Plain, Look::Yellow};
    case RowTone::Fault:
      return {Look::Name, Look::Faint, Look::Faint, Look::Alarm};
    case RowTone::Disabled:
      break;
  }
  return {Look::Faint, Look::Faint, Look::Faint, Look::Faint};
}

bool IsWeight(int item) { return item >= Item::Gross && item <= Item::NetWeight; }
const Lamp& LampOf(int item) { return kLamps[static_cast<std::size_t>(item)]; }

void DropTrailingDots(std::string& text) { text.erase(text.find_last_not_of('.') + 1); }

}  // namespace

char LampLetter(int item) { return LampOf(item).letter; }

std::string CellText(const Tables& tables, int ch, int item) {
  if (IsLamp(item)) return {tables.ChanIndicator[item][ch] == True ? LampLetter(item) : kLampOff};
  return std::string(TextOfCell(tables, ch, item));
}

std::string FitCell(std::string text, int item, const TextCell& place) {
  const auto width = static_cast<std::size_t>(place.width);
  if (item == Item::StatusCaption && text.size() > width) DropTrailingDots(text);
  if (!IsWeight(item)) return text;
  text.erase(0, text.find_first_not_of(' '));
  if (text.size() > width) return std::string(width, '#');
  return std::string(width - text.size(), ' ') + text;
}

Look LookOf(const Tables& tables, int ch, int item) {
  if (IsLamp(item)) return tables.ChanIndicator[item][ch] == True ? LampOf(item).look : Look::Faint;
  const ToneLooks looks = LooksOf(ToneOf(tables, ch));
  if (item == Item::Description) return looks.name;
  if (item == Item::StatusCaption) return looks.caption;
  const int indicated = tables.ChanIndicator[Item::Net][ch] == True ? Item::NetWeight : Item::Gross;
  return item == indicated ? looks.indicated : looks.otherWeight;
}
