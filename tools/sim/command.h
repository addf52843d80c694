#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace sim {

/// What a device can be told over its line.
struct Command {
  enum class Kind { Zero, Print, Weight, Tare, ClearTare, PresetTare };
  Kind kind;
  double value = 0;  ///< of a preset tare
  friend bool operator==(const Command&, const Command&) = default;
};

/// Cuts what arrives on a line into commands, each ended by CR. Control characters are left out, LF and the marks of
/// flow control among them; what is no command is forgotten.
class CommandReader {
 public:
  std::vector<Command> Take(std::string_view bytes);

 private:
  static std::optional<Command> Understand(std::string_view text);

  std::string text_;
};

}  // namespace sim
