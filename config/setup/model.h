#pragma once

#include <functional>
#include <optional>
#include <string>
#include <string_view>

#include "config/setup/fields.h"
#include "config/setup/status_entry.h"
#include "config/setup/status_grid.h"
#include "config/setup_screen.h"

class Configuration;
struct Tables;

/// The setup screen `frmTarvexStdSetup` without a window: its fields, and the rules that run when one is set. A window
/// draws the fields and hands events in; a program sets them by name. Setting a field runs its rule by whomever it is
/// set, also to the value that it has.
class SetupModel : public SetupScreen {
 public:
  /// `configuration` loads the protocol that the user picks. Both must outlive the model.
  SetupModel(Tables& tables, Configuration& configuration);

  SetupFields& Fields() { return fields_; }
  const SetupFields& Fields() const { return fields_; }
  StatusGrid& Grid() { return grid_; }
  const StatusGrid& Grid() const { return grid_; }
  StatusEntry& Entry() { return entry_; }

  // Actions 1, 2, 13 and 14 of `CfgProc`. The two that take raise 6 for a number above 32 bits, with the field.
  void ShowChannel(int ch) override;
  void TakeChannel(int ch) override;
  void ShowProtocol(int proto) override;
  void TakeProtocol(int proto) override;

  /// True while a channel is being loaded: the rule of `cb(3)` loads no protocol then.
  void SetLoading(bool loading) { loading_ = loading; }

  // What a person does, or a program in his place. A disabled field is set all the same; the view keeps people off it.
  void SetIndex(FieldId list, int index);
  void SetValue(FieldId check, int value);
  void SetText(FieldId text, std::string_view value);
  /// Any button but `cmdOk` and `cmdCancel`, which leave the screen.
  void Press(Control button);
  /// A field gets or loses the focus: a list without a selection takes its first item, a focus mark shows.
  void TakeFocus(FieldId field);
  void LoseFocus(FieldId field);
  /// Double click or Return in the grid.
  void OpenEntry();

  /// The field that the focus is to go to, once; nothing if it stays.
  std::optional<FieldId> TakeFocusRequest();
  /// Called after anything has changed; the view draws the fields anew.
  void OnChange(std::function<void()> handler) { onChange_ = std::move(handler); }

 private:
  Tables& tables_;
  Configuration& configuration_;
  SetupFields fields_;
  StatusGrid grid_;
  StatusEntry entry_{fields_, grid_};
  bool loading_ = false;
  std::optional<FieldId> focusRequest_;
  std::function<void()> onChange_;
};

/// What becomes of a text that somebody types or pastes into a field.
struct TypedText {
  std::string text;          ///< what of it the field takes
  std::string_view refusal;  ///< why something was left out, for a tip; empty if all was taken
};

/// Applies what a field takes: its limit, digits alone where it takes no more, no double quotes, which the settings
/// files cannot carry, and no line ends.
TypedText TakeTyped(const FieldRow& row, std::string_view typed);

/// False for a key that a number field does nothing on.
bool TakesKey(const FieldRow& row, int keyCode);
