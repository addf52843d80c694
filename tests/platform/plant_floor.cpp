#include "tests/platform/plant_floor.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <termios.h>

#include <cstdlib>

#include "platform/run_time_error.h"

std::size_t FarEnd::SendSome(std::string_view data) {
  const ssize_t sent = write(handle_.Get(), data.data(), data.size());
  return sent > 0 ? static_cast<std::size_t>(sent) : 0;
}

std::string FarEnd::Take() {
  std::string all;
  char some[4096];
  for (ssize_t count; (count = read(handle_.Get(), some, sizeof some)) > 0;) {
    all.append(some, static_cast<std::size_t>(count));
  }
  return all;
}

std::string FarEnd::Take(std::size_t size) {
  std::string all;
  Eventually([&] {
    all += Take();
    return all.size() >= size;
  });
  return all;
}

Scale::Scale() : FarEnd(posix_openpt(O_RDWR | O_NOCTTY | O_CLOEXEC | O_NONBLOCK)) {
  if (grantpt(Handle()) != 0 || unlockpt(Handle()) != 0) throw std::runtime_error("no pseudo-terminal");
  termios line{};
  tcgetattr(Handle(), &line);
  cfmakeraw(&line);  // a scale does not hear its own words before the other end is opened
  tcsetattr(Handle(), TCSANOW, &line);
}

std::string Scale::Path() const { return ptsname(Handle()); }

SerialPort& PlantFloor::Open(int ch, const char* settings, int handshaking) {
  SerialPort& port = ports.Port(ch);
  port.SetCommPort(ch + 1);
  port.SetSettings(settings);
  port.SetHandshaking(handshaking);
  port.Open();
  return port;
}

int PlantFloor::OpeningFault(int ch) {
  return FaultNumber([&] { Open(ch); });
}

std::string PlantFloor::Receive(std::size_t size) {
  std::string all;
  std::string chunk;
  Eventually([&] {
    ports.Poll();
    ports.Port(0).Input(chunk);
    all += chunk;
    return all.size() >= size;
  });
  return all;
}

void PlantFloor::Pass(std::int64_t duration) {
  milliseconds += duration;
  ports.Poll();
}

void PlantFloor::ExpectTalk(FarEnd& device, const std::string& text) {
  ASSERT_EQ(device.SendSome(text), text.size());
  EXPECT_EQ(Receive(text.size()), text);
  ports.Port(0).Output(text);
  EXPECT_EQ(device.Take(text.size()), text);
}
