#include <gtest/gtest.h>

#include "platform/run_time_error.h"
#include "tests/platform/plant_floor.h"

namespace {

/// Lets the port and the server find each other; no time passes for the port.
FarEnd Connection(PlantFloor& floor, DeviceServer& server) {
  EXPECT_TRUE(Eventually([&] { return floor.ports.Poll(), server.HasCaller(); }));
  FarEnd connection = server.Accept();
  EXPECT_TRUE(Eventually([&] {  // the port counts as connected once its output arrives
    floor.ports.Poll();
    floor.ports.Port(0).Output("?");
    return !connection.Take().empty();
  }));
  connection.Take();
  return connection;
}

}  // namespace

TEST(DeviceServer, APortOpensWithoutItsServerAndFindsItOnceASecond) {
  DeviceServer server;
  server.Stop();
  PlantFloor floor(server.Address());
  SerialPort& port = floor.Open();
  EXPECT_TRUE(port.PortOpen());
  for (int tick = 0; tick < 20; ++tick) floor.Pass(40);
  port.Output("nobody there");
  EXPECT_EQ(port.InBufferCount(), 0u);

  server.Start();
  floor.Pass(1000);
  FarEnd connection = Connection(floor, server);
  floor.ExpectTalk(connection);
}

TEST(DeviceServer, ALostConnectionReadsAsSilenceAndIsMadeAgain) {
  DeviceServer server;
  PlantFloor floor(server.Address());
  SerialPort& port = floor.Open();
  FarEnd connection = Connection(floor, server);
  const std::size_t before = OpenDescriptors();
  for (int round = 0; round < 50; ++round) {
    connection.SendSome("last words");
    connection.Pull();
    EXPECT_EQ(floor.Receive(10), "last words");
    EXPECT_TRUE(Eventually([&] {
      floor.Pass(1000);
      return server.HasCaller();
    }));
    EXPECT_TRUE(port.PortOpen());
    connection = Connection(floor, server);
  }
  floor.ExpectTalk(connection);
  EXPECT_LE(OpenDescriptors(), before);
}
