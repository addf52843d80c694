#pragma once

#include "core/forms.h"
#include "core/log.h"
#include "core/publisher.h"
#include "core/tables.h"
#include "platform/opc_control.h"
#include "platform/serial_ports.h"
#include "publish/automation.h"
#include "publish/dde_topics.h"

/// The publishing room: two stages from a decoded value to the four outlets of a channel (OPC items, DDE items,
/// `Device` object, detail view), and the way of a client's command to the device.
///
/// First stage, at the moment a value is decoded: compare with the last one published and, only on a change,
/// store it in each outlet's staging place and mark the outlet pending. Second stage, once at the end of a visit:
/// flush the pending outlets.
class Publication : public Publisher {
 public:
  Publication(Tables& tables, SerialPorts& ports, OpcControls& opc, Log& log, ScanDialogs& dialogs);

  Automation& Devices() { return automation_; }
  DdeTopics& Topics() { return topics_; }

  void CreateTopics() override;
  void BindDevices() override;
  void SetVal(int kind, int ch) override;
  void PublishStatus(int ch) override;
  void RepublishOffline(int ch) override;
  void TakeAutomationCommand(int ch) override;
  void TakeOpcCommand(int ch) override;
  void Flush(int ch) override;
  void ConnectOpc(int ch, bool reinit) override;
  void DisconnectOpc(int ch) override;

 private:
  void PublishWeight(int kind, int ch, const std::string& value, std::string& last);
  void FlushPending(int ch, bool opc, bool dde);
  void StageStatus(int ch);
  void StageForOpc(int ch, int slot, const OpcValue& value);

  Tables& tables_;
  SerialPorts& ports_;
  OpcControls& opc_;
  Log& log_;
  ScanDialogs& dialogs_;
  Automation automation_;
  DdeTopics topics_;
};
