#pragma once

/// The fields of the setup screen, which four actions of `CfgProc` fill from the tables and read back.
class SetupScreen {
 public:
  virtual ~SetupScreen() = default;
  virtual void ShowChannel(int ch) = 0;
  virtual void TakeChannel(int ch) = 0;
  virtual void ShowProtocol(int proto) = 0;
  virtual void TakeProtocol(int proto) = 0;
};
