#include "platform/posix/line_settings.h"

#include <unistd.h>

#include <algorithm>
#include <iterator>

namespace {

struct Choice {
  std::string_view text;
  tcflag_t value;
};

constexpr Choice kBauds[] = {{"1200", B1200}, {"2400", B2400},   {"4800", B4800},
                             {"9600", B9600}, {"19200", B19200}, {"38400", B38400}};
constexpr Choice kParities[] = {{"N", 0},      {"n", 0},     {"O", PARENB | PARODD}, {"o", PARENB | PARODD},
                                {"E", PARENB}, {"e", PARENB}};
constexpr Choice kDataBits[] = {{"7", CS7}, {"8", CS8}};
constexpr Choice kStopBits[] = {{"1", 0}, {"2", CSTOPB}};

/// Takes the text up to the next comma off the front of `text`.
std::string_view TakeField(std::string_view& text) {
  const std::string_view field = text.substr(0, text.find(','));
  text.remove_prefix(std::min(field.size() + 1, text.size()));
  return field;
}

template <std::size_t N>
std::optional<tcflag_t> Find(const Choice (&choices)[N], std::string_view text) {
  const auto* found =
      std::find_if(std::begin(choices), std::end(choices), [&](const Choice& choice) { return choice.text == text; });
  if (found == std::end(choices)) return std::nullopt;
  return found->value;
}

}  // namespace

std::optional<LineSettings> ParseLineSettings(std::string_view text) {
  if (std::count(text.begin(), text.end(), ',') != 3) return std::nullopt;
  const auto baud = Find(kBauds, TakeField(text));
  const auto parity = Find(kParities, TakeField(text));
  const auto dataBits = Find(kDataBits, TakeField(text));
  const auto stopBits = Find(kStopBits, TakeField(text));
  if (!baud || !parity || !dataBits || !stopBits) return std::nullopt;
  return LineSettings{*baud, *parity | *dataBits | *stopBits};
}

termios RawLine(const LineSettings& settings, bool xonXoff) {
  termios line{};
  // A break is no byte. A byte with a wrong parity bit is passed on as it came: dropping it would shift the
  // digits behind it in their fields.
  line.c_iflag = IGNBRK | (xonXoff ? tcflag_t{IXON | IXOFF} : 0);
  line.c_cflag = CREAD | CLOCAL | HUPCL | settings.frame;
  std::fill(std::begin(line.c_cc), std::end(line.c_cc), cc_t{_POSIX_VDISABLE});
  line.c_cc[VMIN] = 1;  // "nothing there" and "device gone" must read differently
  line.c_cc[VTIME] = 0;
  line.c_cc[VSTART] = 17;
  line.c_cc[VSTOP] = 19;
  cfsetispeed(&line, settings.speed);
  cfsetospeed(&line, settings.speed);
  return line;
}
