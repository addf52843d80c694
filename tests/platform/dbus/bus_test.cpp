#include "tests/platform/dbus/bus_test.h"

BusTest::BusTest() {
  Tables& tables = plant_.tables;
  tables.ProtoTerminator[kProtocol] = '\r';
  tables.ProtoGrossEnable[kProtocol] = True;
  tables.ProtoGrossPos[kProtocol] = 1;
  tables.ProtoGrossLen[kProtocol] = 7;
  tables.ProtoCmdEnabled[0][kProtocol] = True;
  tables.ProtoCmdText[0][0][kProtocol] = "T~~~~~~X";
  tables.ProtoCmdText[2][0][kProtocol] = "3";
  tables.ChanBidirectional[0] = True;
  plant_.Connect(0, kProtocol);
  plant_.manager.Publishing().CreateTopics();
  plant_.manager.Publishing().BindDevices();
}

void BusTest::StartOnBus() {
  daemon_.Start();
  adapter_.Start();
  ASSERT_TRUE(Until([&] { return !log_.empty(); }));
  ASSERT_EQ(log_.back(), "Session bus: other programs reach the system as org.tarvex.Manager");
}

void BusTest::SendCommand(BusClient& client, int code, double parameter) {
  client.Set(kScale, "CCmd", "n", code);
  client.Set(kScale, "CCmdParm", "d", parameter);
  client.Set(kScale, "CCmdStat", "n", 0);
  client.Call(kScale, "org.tarvex.Device", "CDoUpdate");
}

std::vector<BusClient::Heard> BusTest::Heard(BusClient& client) {
  client.SeesManager();  // the answer comes behind all signals that were sent before it
  std::vector<BusClient::Heard> heard = client.Signals();
  client.ForgetSignals();
  return heard;
}
