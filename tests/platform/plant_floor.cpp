#include "tests/platform/plant_floor.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <netinet/in.h>
#include <poll.h>
#include <signal.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <termios.h>

#include <chrono>
#include <cstdlib>
#include <filesystem>

#include "platform/run_time_error.h"

bool Eventually(const std::function<bool()>& condition) {
  const auto limit = std::chrono::steady_clock::now() + std::chrono::seconds(10);
  while (!condition()) {
    if (std::chrono::steady_clock::now() > limit) return false;
    poll(nullptr, 0, 1);
  }
  return true;
}

std::size_t OpenDescriptors() {
  std::size_t count = 0;
  for ([[maybe_unused]] const auto& entry : std::filesystem::directory_iterator("/proc/self/fd")) ++count;
  return count;
}

TemporaryFolder::TemporaryFolder() {
  std::string name = std::filesystem::temp_directory_path() / "tarvex-test-XXXXXX";
  if (mkdtemp(name.data()) == nullptr) throw std::runtime_error("no folder for the test");
  path_ = name;
}

TemporaryFolder::~TemporaryFolder() {
  std::error_code ignored;
  std::filesystem::remove_all(path_, ignored);
}

OtherProcess::OtherProcess(const std::function<int()>& work) : pid_(fork()) {
  if (pid_ == 0) _exit(work());
}

int OtherProcess::ExitStatus() {
  int status = -1;
  waitpid(std::exchange(pid_, -1), &status, 0);
  return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

void OtherProcess::Kill() {
  if (pid_ <= 0) return;
  kill(pid_, SIGKILL);
  ExitStatus();
}

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

DeviceServer::DeviceServer() { Start(); }

void DeviceServer::Start() {
  listener_ = Descriptor(socket(AF_INET, SOCK_STREAM | SOCK_NONBLOCK | SOCK_CLOEXEC, 0));
  const int on = 1;
  setsockopt(listener_.Get(), SOL_SOCKET, SO_REUSEADDR, &on, sizeof on);
  sockaddr_in here{};
  here.sin_family = AF_INET;
  here.sin_port = htons(static_cast<std::uint16_t>(port_));
  here.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
  socklen_t size = sizeof here;
  if (bind(listener_.Get(), reinterpret_cast<sockaddr*>(&here), size) != 0 || listen(listener_.Get(), 1) != 0 ||
      getsockname(listener_.Get(), reinterpret_cast<sockaddr*>(&here), &size) != 0) {
    throw std::runtime_error("no device server");
  }
  port_ = ntohs(here.sin_port);
}

std::string DeviceServer::Address(std::string_view host) const {
  return "tcp://" + std::string(host) + ":" + std::to_string(port_);
}

bool DeviceServer::HasCaller() const {
  pollfd waiting{listener_.Get(), POLLIN, 0};
  return poll(&waiting, 1, 0) == 1;
}

FarEnd DeviceServer::Accept() { return FarEnd(accept4(listener_.Get(), nullptr, nullptr, SOCK_NONBLOCK)); }

SerialPort& PlantFloor::Open(int ch, const char* settings, int handshaking) {
  SerialPort& port = ports.Port(ch);
  port.SetCommPort(ch + 1);
  port.SetSettings(settings);
  port.SetHandshaking(handshaking);
  port.Open();
  return port;
}

int PlantFloor::OpeningFault(int ch) {
  try {
    Open(ch);
    return 0;
  } catch (const RunTimeError& fault) {
    return fault.Number();
  }
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
