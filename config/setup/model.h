#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string_view>

#include "config/setup/fields.h"
#include "config/setup/status_entry.h"
#include "config/setup/status_grid.h"
#include "config/setup_screen.h"

class Configuration;
class RunTimeError;
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
  const StatusEntry& Entry() const { return entry_; }

  /// From here on the screen is channel `ch`'s (0 to 31), with its heading and its panels closed; what the files hold
  /// is still to be shown. Until `End` the channel actions for any other channel do nothing.
  void Begin(int ch);
  void End();
  /// The channel that is edited, or `kNoChannel`.
  int Channel() const { return channel_; }
  /// The protocol that the data field, status and command panels show.
  int Protocol() const { return protocol_; }

  // Actions 1, 2, 13 and 14 of `CfgProc`. The two that take raise, with the field's name, 6 for a number above 32 bits
  // and 13 for a position or length that is no number.
  void ShowChannel(int ch) override;
  void TakeChannel(int ch) override;
  void ShowProtocol(int proto) override;
  void TakeProtocol(int proto) override;

  /// `SetupLoading`: while a channel is being loaded the rule of `cb(3)` loads no protocol.
  void SetLoading(bool loading) { loading_ = loading; }
  /// A protocol of the program's own is saved only with the word UNPROTECT.
  bool ProtocolIsSaved(std::int32_t proto) const;

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
  /// A row or column of the grid is selected.
  void SelectCell(int row, int column);

  /// The field that the focus is to go to, once; nothing if it stays.
  std::optional<FieldId> TakeFocusRequest();
  /// Called after anything has changed; the view draws the fields anew.
  void OnChange(std::function<void()> handler) { onChange_ = std::move(handler); }
  /// Called with what the file of a protocol raises that was picked; without a handler it is raised.
  void OnFault(std::function<void(const RunTimeError&)> handler) { onFault_ = std::move(handler); }
  /// Called when the panels have been filled from a protocol.
  void OnProtocolShown(std::function<void(int proto)> handler) { onProtocolShown_ = std::move(handler); }

 private:
  void Set(FieldId field, int value);
  void RunRule(FieldId field);
  void ChooseProtocol(int proto);
  void Changed() const;

  Tables& tables_;
  Configuration& configuration_;
  SetupFields fields_;
  StatusGrid grid_;
  StatusEntry entry_{fields_, grid_};
  int channel_;
  int protocol_ = 0;
  bool loading_ = false;
  std::optional<FieldId> focusRequest_;
  std::function<void()> onChange_;
  std::function<void(const RunTimeError&)> onFault_;
  std::function<void(int)> onProtocolShown_;
};
