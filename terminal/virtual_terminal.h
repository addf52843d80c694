#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "platform/vant_api.h"

struct Engine;

/// A key on the panel of the virtual terminal: the name of its control and the code that the terminal gets.
struct TerminalKey {
  std::string_view control;
  std::string_view face;  ///< what stands on it
  std::int16_t code;
};

inline constexpr TerminalKey kTerminalKeys[] = {
    {"Key_0", "0", 48},       {"Key_1", "1", 49},     {"Key_2", "2", 50},    {"Key_3", "3", 51},
    {"Key_4", "4", 52},       {"Key_5", "5", 53},     {"Key_6", "6", 54},    {"Key_7", "7", 55},
    {"Key_8", "8", 56},       {"Key_9", "9", 57},     {"Label22", ".", 46},  {"Key_SPC", "Space", 32},
    {"Key_F", "Function", 1}, {"Key_ESC", "Esc", 2},  {"Key_E", "Enter", 8}, {"Key_M", "Memory", 3},
    {"Key_T", "Tare", 4},     {"Key_S", "Select", 5}, {"Key_C", "Clear", 6}, {"Key_Z", "Zero", 7},
};

inline constexpr int kTerminalNodes = 6;

/// The front panel of a terminal on the network, without its window: each key pressed here is pressed there. Nothing of
/// the terminal's display comes back.
class VirtualTerminal {
 public:
  VirtualTerminal(Engine& engine, VantAPI32& library) : engine_(engine), library_(library) {}

  /// Title while it stands for the channel in `DetailChannel`.
  std::string Caption() const;
  /// Option button 0 to 5: keys go to terminal 1 to 6 from now on.
  void ChooseNode(int option) { node_ = std::to_string(option + 1); }
  /// The node that was chosen, 0 for none.
  std::int16_t Node() const;

  void Click(const TerminalKey& key);
  /// A key of the keyboard goes down, by its classic code (F1 is 112, Enter 13). Most send nothing.
  void KeyDown(int keyCode);
  /// A key has made a character. Enter, Esc and Backspace do both, and send both.
  void KeyPress(std::uint8_t character) { SendKey(character); }

  /// The form is unloaded: the registration ends, and those who read terminals find out for themselves.
  void Unload();

 private:
  void SendKey(std::int16_t key);
  void TellOfFailure();

  Engine& engine_;
  VantAPI32& library_;
  std::string node_;          ///< "1" to "6", empty before one was chosen
  std::int16_t keyMode_ = 0;  ///< 1 from the first Backspace on, until the program ends
  bool ended_ = false;        ///< the operator has had enough: the rest of the key goes nowhere
};
