#pragma once

#include <QTimer>
#include <functional>
#include <nlohmann/json.hpp>
#include <string>

#include "core/table.h"
#include "platform/opc_control.h"
#include "platform/opcua/opcua_control.h"
#include "platform/opcua/opcua_helper.h"

/// What the control of a channel needs of all together.
class OpcUaLink {
 public:
  virtual ~OpcUaLink() = default;
  virtual OpcServer ServerOf(const std::string& serverName, const std::string& nodeName) = 0;
  virtual void NeedHelper() = 0;
  virtual void Send(const nlohmann::json& message) = 0;
  /// The next round of the message loop hands over what all channels have.
  virtual void MarkForHandOver() = 0;
  /// At once, because the channel is about to leave.
  virtual void HandOver(OpcUaControl& control) = 0;
  virtual void Report(int ch, const std::string& text) = 0;
};

/// The OPC client controls as clients of UA servers. Needs a `QCoreApplication`. Updates are handed to a helper process
/// for all channels at once, behind the tick that asked for them; while the helper or a server is away the last value
/// of each item is kept and nothing more.
class OpcUaControls : public OpcControls, private OpcUaLink {
 public:
  struct Hooks {
    /// Where the certificates are kept.
    std::function<std::string()> certificateFolder;
    /// The server behind a name and a node; raises a `RunTimeError` that says what is wrong with it.
    std::function<OpcServer(const std::string& serverName, const std::string& nodeName)> serverOf;
    /// What has become of the connection of a channel, in a line for its log.
    std::function<void(int ch, const std::string& text)> report;
  };

  explicit OpcUaControls(Hooks hooks);
  /// As the other one, with the helper in `helperFolder` instead of the one that TARVEX_OPCUA names, or that was
  /// built or installed with the program.
  OpcUaControls(Hooks hooks, const std::string& helperFolder);

  OpcControl& Control(int ch) override { return controls_[ch]; }

 private:
  OpcServer ServerOf(const std::string& serverName, const std::string& nodeName) override;
  void NeedHelper() override { helper_.Need(); }
  void Send(const nlohmann::json& message) override { helper_.Send(message); }
  void MarkForHandOver() override;
  void HandOver(OpcUaControl& control) override;
  void Report(int ch, const std::string& text) override { hooks_.report(ch, text); }

  void HandOverAll();
  void IntroduceAll();
  void TakeMessage(const nlohmann::json& message);
  void LoseHelper(const std::string& why);

  Hooks hooks_;
  Table<OpcUaControl, 32> controls_;
  QTimer handOver_;
  OpcUaHelper helper_;
};
