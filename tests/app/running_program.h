#pragma once

#include <sys/types.h>

#include <initializer_list>
#include <string>

#include "platform/posix/descriptor.h"

/// tarvexd as a process of its own, in the program's folder `folder`. Standard output and error go to files there;
/// on a terminal, both go to it.
class RunningProgram {
 public:
  enum class Place { Files, Terminal };

  explicit RunningProgram(const std::string& folder, std::initializer_list<const char*> words = {},
                          Place place = Place::Files);
  RunningProgram(const RunningProgram&) = delete;
  RunningProgram& operator=(const RunningProgram&) = delete;
  ~RunningProgram();

  void Signal(int number) const;
  /// Waits for the end; -1 if it was killed or does not end within ten seconds.
  int ExitStatus();

  std::string Output() const;
  std::string Errors() const;
  /// The operator's side of the terminal.
  int Terminal() const { return terminal_.Get(); }
  /// All that the terminal has been sent so far, what was read before included.
  const std::string& Screen();

 private:
  std::string folder_;
  pid_t pid_ = -1;
  Descriptor terminal_;
  std::string screen_;
};

/// Content of a file; empty if it is not there.
std::string FileText(const std::string& path);
