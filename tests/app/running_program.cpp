#include "tests/app/running_program.h"

#include <fcntl.h>
#include <poll.h>
#include <pty.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <csignal>
#include <cstdlib>
#include <fstream>
#include <sstream>
#include <vector>

#include "tests/platform/machine.h"

namespace {

constexpr winsize kTerminalSize{24, 80, 0, 0};

void RedirectToFiles(const std::string& folder) {
  dup2(open("/dev/null", O_RDONLY), STDIN_FILENO);
  dup2(open((folder + "/output").c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0600), STDOUT_FILENO);
  dup2(open((folder + "/errors").c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0600), STDERR_FILENO);
}

[[noreturn]] void Become(const std::string& folder, std::vector<const char*> words) {
  setenv("TARVEX_HOME", folder.c_str(), 1);
  setenv("TARVEX_ROWS", "1", 1);
  setenv("TARVEX_SUMMARY", "1", 1);
  setenv("TERM", "xterm-256color", 1);
  words.insert(words.begin(), TARVEXD);
  words.push_back(nullptr);
  execv(TARVEXD, const_cast<char**>(words.data()));
  _exit(127);
}

}  // namespace

std::string FileText(const std::string& path) {
  std::ostringstream text;
  text << std::ifstream(path, std::ios::binary).rdbuf();
  return text.str();
}

RunningProgram::RunningProgram(const std::string& folder, std::initializer_list<const char*> words, Place place)
    : folder_(folder) {
  int operatorSide = -1;
  pid_ = place == Place::Terminal ? forkpty(&operatorSide, nullptr, nullptr, &kTerminalSize) : fork();
  if (pid_ == 0) {
    if (place == Place::Files) RedirectToFiles(folder);
    Become(folder, words);
  }
  terminal_ = Descriptor(operatorSide);
  if (terminal_) fcntl(terminal_.Get(), F_SETFL, O_NONBLOCK);
}

RunningProgram::~RunningProgram() {
  if (pid_ <= 0) return;
  Signal(SIGKILL);
  waitpid(pid_, nullptr, 0);
}

void RunningProgram::Signal(int number) const { kill(pid_, number); }

int RunningProgram::ExitStatus() {
  int status = -1;
  if (!Eventually([&] { return waitpid(pid_, &status, WNOHANG) == pid_; })) return -1;
  pid_ = -1;
  return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

std::string RunningProgram::Output() const { return FileText(folder_ + "/output"); }

std::string RunningProgram::Errors() const { return FileText(folder_ + "/errors"); }

const std::string& RunningProgram::Screen() {
  std::array<char, 4096> buffer;
  for (ssize_t size = 0; (size = read(terminal_.Get(), buffer.data(), buffer.size())) > 0;) {
    screen_.append(buffer.data(), static_cast<std::size_t>(size));
  }
  return screen_;
}
