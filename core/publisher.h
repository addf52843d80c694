#pragma once

/// How the engine hands values to the outlets of a channel and takes commands from its clients.
class Publisher {
 public:
  virtual ~Publisher() = default;

  /// Creates the 32 link topics and the `Device` objects; called once at start-up.
  virtual void CreateTopics() = 0;
  virtual void BindDevices() = 0;

  /// Hands a changed value on: kind 1 gross, 2 tare, 3 net, 6 status word, 9 ID, 10 description.
  /// Other kinds do nothing.
  virtual void SetVal(int kind, int ch) = 0;
  /// Publishes the status word if it differs from the one last published.
  virtual void PublishStatus(int ch) = 0;
  /// After a fall offline: has the next stream publish everything and stages the status word once more.
  virtual void RepublishOffline(int ch) = 0;

  virtual void TakeAutomationCommand(int ch) = 0;
  virtual void TakeOpcCommand(int ch) = 0;
  /// End of a visit: flushes the pending outlets in the order OPC, DDE, `Device`.
  virtual void Flush(int ch) = 0;

  /// `reinit` selects the wording of a re-initialisation.
  virtual void ConnectOpc(int ch, bool reinit) = 0;
  virtual void DisconnectOpc(int ch) = 0;
};
