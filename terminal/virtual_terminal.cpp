#include "terminal/virtual_terminal.h"

#include <algorithm>

#include "core/engine.h"
#include "core/fixed_tables.h"
#include "core/shutdown.h"
#include "protocol/number.h"
#include "terminal/status_catalogue.h"

namespace {

constexpr int kAbort = 3;
constexpr std::int16_t kBackspaceMode = 1;
constexpr std::int16_t kNoClicks = 2;  ///< a key mode that nothing sets

namespace KeyCode {
constexpr int Backspace = 8;
constexpr int Enter = 13;
constexpr int Esc = 27;
constexpr int F1 = 112;
}  // namespace KeyCode

struct KeyboardKey {
  int keyCode;
  std::int16_t code;
};

constexpr KeyboardKey kKeyboard[] = {
    {KeyCode::F1, 19},    {KeyCode::F1 + 1, 20}, {KeyCode::F1 + 2, 21},   {KeyCode::F1 + 3, 22},
    {KeyCode::F1 + 4, 7}, {KeyCode::F1 + 5, 1},  {KeyCode::F1 + 6, 5},    {KeyCode::F1 + 7, 6},
    {KeyCode::F1 + 8, 4}, {KeyCode::F1 + 9, 3},  {KeyCode::F1 + 10, 23},  {KeyCode::F1 + 11, 24},
    {KeyCode::Esc, 2},    {KeyCode::Enter, 8},   {KeyCode::Backspace, 6},
};

}  // namespace

std::string VirtualTerminal::Caption() const {
  return " Tarvex Channel " + DisplayNumber(engine_.tables.DetailChannel) + "  Virtual Vantor...";
}

std::int16_t VirtualTerminal::Node() const { return static_cast<std::int16_t>(NumericValue(node_)); }

void VirtualTerminal::Click(const TerminalKey& key) {
  if (keyMode_ != kNoClicks) SendKey(key.code);
}

void VirtualTerminal::KeyDown(int keyCode) {
  const auto* const key = std::find_if(std::begin(kKeyboard), std::end(kKeyboard),
                                       [&](const KeyboardKey& known) { return known.keyCode == keyCode; });
  if (key == std::end(kKeyboard)) return;
  if (keyCode == KeyCode::Backspace) keyMode_ = kBackspaceMode;
  SendKey(key->code);
}

void VirtualTerminal::SendKey(std::int16_t key) {
  if (Node() == 0 || ended_) return;
  Tables& tables = engine_.tables;
  tables.VantStatus = library_.VantSendKeystroke(Node(), keyMode_, key);
  if (tables.VantStatus != VantStatusCode::Success) TellOfFailure();
}

void VirtualTerminal::TellOfFailure() {
  Tables& tables = engine_.tables;
  const StatusMeaning meaning = MeaningOf(tables.VantStatus);
  tables.VantErrorChoice = engine_.notice.AbortRetryIgnore(
      meaning.title, "Error Code= " + std::string(meaning.name) + "\r\n" + meaning.body);
  if (tables.VantErrorChoice != kAbort) return;
  ended_ = true;
  tables.VantStatus = library_.VantCloseProcess();
  CloseLinks(engine_);
  TaskCtrl(engine_, kEndTask);
}

void VirtualTerminal::Unload() { engine_.tables.VantStatus = library_.VantCloseProcess(); }
