// Stand-in for the library of the terminals' network. It speaks to a simulated network over the Unix socket that the
// environment variable TARVEX_VANT_SOCKET names: one text line a request, one a reply.
//
//   REGISTER node          CLOSE          KEY terminal mode key
//   READ path length       WRITE path length hex-of-the-record
//
// A reply is a status, and for a read that has succeeded the field's text as hex behind it. A socket that is not there,
// or that does not answer within two seconds, is status 1.

#include <poll.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

#include <chrono>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <mutex>
#include <string>
#include <string_view>

#define VANT_ENTRY extern "C" __attribute__((visibility("default")))

namespace {

constexpr std::int16_t kBadConnect = 1;
constexpr std::int16_t kInvalidBufferLength = 67;
constexpr std::int16_t kLongestRecord = 600;
constexpr int kLongestAnswer = 2000;  // milliseconds

class Network {
 public:
  /// The reply to a request, without its line end; empty if there is none. A connection that has been lost is made
  /// again, and the process registered as it was.
  std::string Ask(const std::string& request) {
    if (socket_ < 0 && !registration_.empty() && request != registration_) Exchange(registration_);
    const std::string reply = Exchange(request);
    if (request.starts_with("REGISTER") && reply == "0") registration_ = request;
    if (request == "CLOSE" && reply == "0") registration_.clear();
    return reply;
  }

 private:
  std::string Exchange(const std::string& request) {
    if (!Connect() || !Send(request + "\n")) return Lose();
    std::string reply;
    const auto end = std::chrono::steady_clock::now() + std::chrono::milliseconds(kLongestAnswer);
    while (!reply.ends_with('\n')) {
      const auto left = std::chrono::duration_cast<std::chrono::milliseconds>(end - std::chrono::steady_clock::now());
      pollfd waiting{socket_, POLLIN, 0};
      if (left.count() <= 0 || poll(&waiting, 1, static_cast<int>(left.count())) <= 0) return Lose();
      char part[2048];
      const ssize_t size = recv(socket_, part, sizeof part, 0);
      if (size <= 0) return Lose();
      reply.append(part, static_cast<std::size_t>(size));
    }
    reply.pop_back();
    return reply;
  }

  bool Connect() {
    if (socket_ >= 0) return true;
    const char* const path = std::getenv("TARVEX_VANT_SOCKET");
    sockaddr_un address{};
    if (path == nullptr || std::strlen(path) >= sizeof address.sun_path) return false;
    address.sun_family = AF_UNIX;
    std::strcpy(address.sun_path, path);
    socket_ = socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0);
    return socket_ >= 0 && connect(socket_, reinterpret_cast<sockaddr*>(&address), sizeof address) == 0;
  }
  bool Send(std::string_view text) {
    while (!text.empty()) {
      const ssize_t size = send(socket_, text.data(), text.size(), MSG_NOSIGNAL);
      if (size <= 0) return false;
      text.remove_prefix(static_cast<std::size_t>(size));
    }
    return true;
  }
  /// A late answer may not be taken for that of the next request.
  std::string Lose() {
    if (socket_ >= 0) close(socket_);
    socket_ = -1;
    return {};
  }

  int socket_ = -1;
  std::string registration_;  ///< the request of a registration that holds
};

std::mutex guard;
Network network;

std::int16_t StatusOf(const std::string& reply) {
  return reply.empty() ? kBadConnect : static_cast<std::int16_t>(std::atoi(reply.c_str()));
}

std::int16_t Ask(const std::string& request) {
  const std::lock_guard lock(guard);
  return StatusOf(network.Ask(request));
}

std::string Hex(const char* bytes, std::int16_t length) {
  constexpr std::string_view kDigits = "0123456789abcdef";
  std::string text;
  for (std::int16_t at = 0; at < length; ++at) {
    const auto byte = static_cast<unsigned char>(bytes[at]);
    text += kDigits[byte / 16];
    text += kDigits[byte % 16];
  }
  return text;
}

int DigitOf(char c) {
  if (c >= '0' && c <= '9') return c - '0';
  if (c >= 'a' && c <= 'f') return c - 'a' + 10;
  return 0;
}

/// The text, a NUL and blanks; no NUL for a text that fills the record.
std::int16_t Fill(std::string_view hex, std::int16_t length, char* record) {
  std::memset(record, ' ', static_cast<std::size_t>(length));
  std::int16_t at = 0;
  for (; at < length && hex.size() >= 2; ++at, hex.remove_prefix(2)) {
    record[at] = static_cast<char>(16 * DigitOf(hex[0]) + DigitOf(hex[1]));
  }
  if (at < length) record[at] = '\0';
  return at;
}

bool IsPath(const char* path) { return path != nullptr && *path != '\0' && std::strpbrk(path, " \r\n") == nullptr; }

}  // namespace

VANT_ENTRY std::int16_t VantRegisterProcess(std::int16_t node) { return Ask("REGISTER " + std::to_string(node)); }

VANT_ENTRY std::int16_t VantCloseProcess() { return Ask("CLOSE"); }

VANT_ENTRY std::int16_t VantRead(const char* path, std::int16_t length, char* buffer, std::int16_t* count) {
  constexpr std::int16_t kInvalidField = 2;
  *count = 0;
  if (length < 1 || length > kLongestRecord) return kInvalidBufferLength;
  if (!IsPath(path)) return kInvalidField;
  const std::lock_guard lock(guard);
  const std::string reply = network.Ask("READ " + std::string(path) + " " + std::to_string(length));
  if (const std::int16_t status = StatusOf(reply); status != 0) return status;
  const std::size_t text = reply.find(' ');
  *count =
      Fill(text == std::string::npos ? std::string_view{} : std::string_view(reply).substr(text + 1), length, buffer);
  return 0;
}

VANT_ENTRY std::int16_t VantWrite(const char* path, std::int16_t length, const char* buffer) {
  constexpr std::int16_t kInvalidField = 2;
  if (length < 1 || length > kLongestRecord) return kInvalidBufferLength;
  if (!IsPath(path)) return kInvalidField;
  return Ask("WRITE " + std::string(path) + " " + std::to_string(length) + " " + Hex(buffer, length));
}

VANT_ENTRY std::int16_t VantSendKeystroke(std::int16_t terminal, std::int16_t mode, std::int16_t key) {
  return Ask("KEY " + std::to_string(terminal) + " " + std::to_string(mode) + " " + std::to_string(key));
}

VANT_ENTRY std::int16_t VantDisplayText() { return 0; }

VANT_ENTRY std::int16_t VantResetDisplay() { return 0; }
