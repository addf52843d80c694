#include "tools/replay/capture.h"

#include <charconv>
#include <limits>
#include <sstream>
#include <type_traits>

namespace {

constexpr std::string_view kBlanks = " \t";
constexpr int kLastOpcItem = 7;

/// The number that `text` is, to its last character; raises a text that says what is wrong.
template <typename Number>
Number Parse(const std::string& text) {
  Number number{};
  const auto read = std::from_chars(text.data(), text.data() + text.size(), number);
  if (read.ec == std::errc::result_out_of_range) throw CaptureError("'" + text + "' is out of range");
  if (read.ec != std::errc{} || read.ptr != text.data() + text.size())
    throw CaptureError("'" + text + "' is no number");
  return number;
}

using FieldSetter = std::function<void(Device&)> (*)(const std::string& text);

template <auto Field>
std::function<void(Device&)> SetterOf(const std::string& text) {
  using Value = std::remove_reference_t<decltype(std::declval<Device&>().*Field)>;
  if constexpr (std::is_same_v<Value, std::string>) {
    return [text](Device& device) { device.*Field = text; };
  } else {
    return [value = Parse<Value>(text)](Device& device) { device.*Field = value; };
  }
}

struct DeviceFieldName {
  std::string_view name;
  FieldSetter setter;
};

constexpr DeviceFieldName kDeviceFields[] = {
    {"CDeviceDesc", SetterOf<&Device::CDeviceDesc>},
    {"CDeviceID", SetterOf<&Device::CDeviceID>},
    {"CCmd", SetterOf<&Device::CCmd>},
    {"CCmdParm", SetterOf<&Device::CCmdParm>},
    {"CCmdStat", SetterOf<&Device::CCmdStat>},
    {"CGross", SetterOf<&Device::CGross>},
    {"CTare", SetterOf<&Device::CTare>},
    {"CNet", SetterOf<&Device::CNet>},
    {"CScaleStat", SetterOf<&Device::CScaleStat>},
};

std::function<void(Device&)> ReadDeviceField(const std::string& name, const std::string& text) {
  for (const DeviceFieldName& field : kDeviceFields) {
    if (field.name == name) return field.setter(text);
  }
  throw CaptureError("a Device has no field '" + name + "'");
}

std::pair<int, OpcValue> ReadOpcItem(const std::string& name, const std::string& text) {
  const int item = Parse<int>(name);
  if (item < 0 || item > kLastOpcItem) throw CaptureError("there is no OPC item " + name + ", only 0 to 7");
  if (text.empty()) return {item, std::monostate{}};
  try {
    return {item, Parse<double>(text)};
  } catch (const CaptureError&) {
    return {item, text};  // a server may hold a text
  }
}

int HexDigit(char character) {
  if (character >= '0' && character <= '9') return character - '0';
  if (character >= 'a' && character <= 'f') return character - 'a' + 10;
  if (character >= 'A' && character <= 'F') return character - 'A' + 10;
  return -1;
}

std::string ReadHex(const std::string& line) {
  std::string bytes;
  int high = -1;
  for (char character : line) {
    if (kBlanks.find(character) != std::string_view::npos) continue;
    const int digit = HexDigit(character);
    if (digit < 0) throw CaptureError(std::string("'") + character + "' is no hex digit");
    if (high < 0) {
      high = digit;
    } else {
      bytes += static_cast<char>(high << 4 | digit);
      high = -1;
    }
  }
  if (high >= 0) throw CaptureError("the last byte has one hex digit only");
  return bytes;
}

CaptureStep ReadAction(const std::string& line) {
  std::istringstream words(line.substr(1));
  std::string kind;
  words >> kind;
  if (kind != "device" && kind != "opc") throw CaptureError("'!" + kind + "' is unknown; there are !device and !opc");
  DeviceWrites device;
  OpcArrivals opc;
  for (std::string word; words >> word;) {
    const std::size_t equals = word.find('=');
    if (equals == std::string::npos) throw CaptureError("'" + word + "' is not of the form name=value");
    const std::string name = word.substr(0, equals);
    const std::string text = word.substr(equals + 1);
    if (kind == "device") {
      device.fields.push_back(ReadDeviceField(name, text));
    } else {
      opc.items.push_back(ReadOpcItem(name, text));
    }
  }
  if (kind == "device") return device;
  return opc;
}

}  // namespace

std::optional<CaptureStep> CaptureReader::Next() {
  for (std::string line; std::getline(text_, line);) {
    ++line_;
    if (!line.empty() && line.back() == '\r') line.pop_back();
    const std::size_t comment = line.find('#');
    const bool commented = comment != std::string::npos;
    if (commented) line.erase(comment);
    const bool blank = line.find_first_not_of(kBlanks) == std::string::npos;
    if (commented && blank) continue;
    try {
      if (line.starts_with('!')) return ReadAction(line);
      return ArrivingBytes{ReadHex(line)};
    } catch (const CaptureError& fault) {
      throw CaptureError(Place() + ": " + fault.what());
    }
  }
  if (text_.bad()) throw CaptureError(name_ + ": cannot be read");
  return std::nullopt;
}
