#include "tests/platform/speech/speech_service.h"

#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

#include <cstdlib>
#include <cstring>
#include <utility>

using namespace std::chrono_literals;

SpeechService::SpeechService(bool mute) : mute_(mute) {
  std::string pattern = (std::filesystem::temp_directory_path() / "speechXXXXXX").string();
  folder_ = mkdtemp(pattern.data());
  sockaddr_un address{};
  address.sun_family = AF_UNIX;
  const std::string path = folder_ / "socket";
  std::strncpy(address.sun_path, path.c_str(), sizeof address.sun_path - 1);
  listener_ = socket(AF_UNIX, SOCK_STREAM, 0);
  bind(listener_, reinterpret_cast<const sockaddr*>(&address), sizeof address);
  listen(listener_, 1);
  setenv("SPEECHD_ADDRESS", ("unix_socket:" + path).c_str(), 1);
  thread_ = std::thread([this] { Serve(); });
}

SpeechService::~SpeechService() {
  ended_ = true;
  shutdown(listener_, SHUT_RDWR);
  BreakOff();
  thread_.join();
  close(listener_);
  std::filesystem::remove_all(folder_);
}

void SpeechService::BreakOff() { shutdown(connection_, SHUT_RDWR); }

std::vector<std::string> SpeechService::Sentences(std::size_t count) {
  std::unique_lock lock(mutex_);
  changed_.wait_for(lock, 10s, [&] { return sentences_.size() >= count; });
  return sentences_;
}

void SpeechService::Serve() {
  while (!ended_) {
    const int connection = accept(listener_, nullptr, nullptr);
    if (connection < 0) return;
    connection_ = connection;
    Converse(connection);
    connection_ = -1;
    close(connection);
  }
}

bool SpeechService::Send(int connection, const std::string& reply) const {
  return mute_ || send(connection, reply.data(), reply.size(), MSG_NOSIGNAL) > 0;
}

void SpeechService::Converse(int connection) {
  std::string buffer;
  std::string sentence;
  bool speaking = false;
  char bytes[512];
  for (ssize_t count; (count = read(connection, bytes, sizeof bytes)) > 0;) {
    buffer.append(bytes, static_cast<std::size_t>(count));
    for (std::size_t end; (end = buffer.find("\r\n")) != std::string::npos;) {
      const std::string line = buffer.substr(0, end);
      buffer.erase(0, end + 2);
      if (speaking && line != ".") {
        sentence += line;
      } else if (speaking) {
        speaking = false;
        const std::lock_guard lock(mutex_);
        sentences_.push_back(std::exchange(sentence, {}));
        changed_.notify_all();
        Send(connection, "225-1\r\n225 OK MESSAGE QUEUED\r\n");
      } else {
        speaking = line == "speak";
        Send(connection, speaking ? "230 OK RECEIVING DATA\r\n" : "208 OK\r\n");
      }
    }
  }
}
