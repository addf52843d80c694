#include "tools/sim/word_sources.h"

#include <fcntl.h>
#include <sys/stat.h>

#include <array>
#include <cerrno>
#include <filesystem>
#include <system_error>

namespace sim {

namespace {

constexpr std::size_t kLongestLine = 4096;

}  // namespace

std::vector<std::string> WordSource::Lines() {
  std::vector<std::string> lines;
  std::array<char, 512> buffer;
  const ssize_t size = read(descriptor_, buffer.data(), buffer.size());
  if (size < 0 && (errno == EAGAIN || errno == EINTR)) return lines;
  if (size <= 0) {
    descriptor_ = -1;
    return lines;
  }
  text_.append(buffer.data(), static_cast<std::size_t>(size));
  for (std::size_t end; (end = text_.find('\n')) != text_.npos; text_.erase(0, end + 1)) {
    lines.push_back(text_.substr(0, end));
  }
  if (text_.size() > kLongestLine) text_.clear();
  return lines;
}

ControlPipe::ControlPipe(const std::string& path) : path_(path) {
  if (path.empty()) return;
  const bool made = mkfifo(path.c_str(), 0600) == 0;
  if (!made && (errno != EEXIST || !std::filesystem::is_fifo(path))) {
    throw std::system_error(errno, std::generic_category(), "No control pipe can be made at " + path);
  }
  pipe_ = Descriptor(open(path.c_str(), O_RDWR | O_NONBLOCK | O_CLOEXEC));
  if (!pipe_) throw std::system_error(errno, std::generic_category(), path);
}

ControlPipe::~ControlPipe() {
  if (pipe_) unlink(path_.c_str());
}

}  // namespace sim
