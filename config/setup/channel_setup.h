#pragma once

#include "config/setup/model.h"

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
  ChannelSetup(Engine& engine, SetupModel& model, SetupForm& form) : engine_(engine), model_(model), form_(form) {}

  /// `cmdSetup` of channel `ch`: its weights are marked old, its port is closed, its files are read and shown. Nothing
  /// happens while a setup is open, or when the system is stopped. What the files raise is told, and the screen opens
  /// with what the tables hold.
  void Open(int ch);
  bool IsOpen() const { return open_; }

  /// Saves, and leaves the screen; the next tick opens the channel again. A file that cannot be written is told, the
  /// old one stands, and the screen stays with what was typed.
  void cmdOk();
  /// Puts back what the files hold, and leaves the screen.
  void cmdCancel();

 private:
  void ExitForm();

  Engine& engine_;
  SetupModel& model_;
  SetupForm& form_;
  bool open_ = false;
};
