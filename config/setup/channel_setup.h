#pragma once

#include <functional>
#include <map>
#include <string>

#include "config/setup/live_line.h"
#include "config/setup/model.h"
#include "config/setup/protocol_record.h"
#include "core/tables.h"

struct Engine;

/// The window that shows the model.
class SetupForm {
 public:
  virtual ~SetupForm() = default;
  virtual void Show() = 0;
  virtual void Hide() = 0;
  virtual void BusyPointer(bool busy) = 0;
};

/// The setup of one channel from its row button to Ok or Cancel, while the scan goes on for all others.
class ChannelSetup {
 public:
  ChannelSetup(Engine& engine, SetupModel& model, SetupForm& form);

  /// `cmdSetup` of channel `ch`: its weights are marked old, its port is closed, its files are read and shown. Nothing
  /// happens while a setup is open, or when the system is stopped. What the files raise is told, and the screen shows
  /// what the tables hold, so that a damaged file can be mended.
  void Open(int ch);
  bool IsOpen() const { return model_.Channel() != kNoChannel; }

  /// Saves, and leaves the screen; the next tick opens the channel again. If a file cannot be written or another
  /// program has changed one meanwhile, that is told, both files stand as they were, and the screen stays with what was
  /// typed. Nothing happens while an entry of the status table is open.
  void cmdOk();
  /// Puts back what the files hold, and leaves the screen. Nothing happens while an entry is open.
  void cmdCancel();

  /// What the device of the channel sends, decoded with the fields as they are typed; `focus` is the field that the
  /// keyboard is in. To be asked for some times a second.
  LiveLine Look(std::optional<FieldId> focus);

 private:
  bool LeaveChannel(int ch);
  void Load(int ch);
  void Save(int ch);
  void SaveProtocol(int proto);
  void TakeBackSaving(int ch, const ProtocolRecord& before);
  bool ChangedElsewhere();
  void Note(const std::string& path);
  std::string ContentOf(const std::string& path) const;
  bool Try(const std::function<void()>& step);
  void Tell(const RunTimeError& fault);
  void ExitForm();

  Engine& engine_;
  SetupModel& model_;
  SetupForm& form_;
  LiveListener listener_;
  /// The files as they were when the screen was filled from them.
  std::string channelFile_;
  std::map<std::string, std::string> contentShown_;
};
