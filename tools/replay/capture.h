#pragma once

#include <exception>
#include <functional>
#include <istream>
#include <optional>
#include <string>
#include <utility>
#include <variant>
#include <vector>

#include "platform/opc_control.h"
#include "publish/device.h"

/// A line of a capture that cannot be read. `what()` names file, line and fault.
class CaptureError : public std::exception {
 public:
  explicit CaptureError(std::string text) : text_(std::move(text)) {}
  const char* what() const noexcept override { return text_.c_str(); }

 private:
  std::string text_;
};

/// The bytes that arrive in one tick; none in a silent one.
struct ArrivingBytes {
  std::string bytes;
};
/// A client's writes to the `Device` object, before it calls `CDoUpdate`.
struct DeviceWrites {
  std::vector<std::function<void(Device&)>> fields;
};
/// Values that arrive from the OPC server, by item 0 to 7.
struct OpcArrivals {
  std::vector<std::pair<int, OpcValue>> items;
};

using CaptureStep = std::variant<ArrivingBytes, DeviceWrites, OpcArrivals>;

/// Reads a capture: text, one line a tick, the bytes as hex digits with blanks wherever they help; an empty line
/// is a silent tick. A line that begins with "!" acts before the next tick. "#" starts a comment, and a line with
/// nothing else is no tick.
class CaptureReader {
 public:
  /// `name` is the capture's name in faults. The stream must outlive the reader.
  CaptureReader(std::istream& text, std::string name) : text_(text), name_(std::move(name)) {}

  /// The next step; nothing at the end. Raises `CaptureError`.
  std::optional<CaptureStep> Next();
  /// "name:line" of the step last read.
  std::string Place() const { return name_ + ":" + std::to_string(line_); }

 private:
  std::istream& text_;
  std::string name_;
  int line_ = 0;
};
