#pragma once

#include <string>

#include "platform/posix/descriptor.h"
#include "platform/posix/line_settings.h"
#include "platform/posix/link.h"

/// A serial device or a pseudo-terminal. It is held exclusively while connected: other programs cannot open it,
/// and those that may all the same, or that only ask for locks, find it locked.
class TtyLink : public Link {
 public:
  /// `who` names the port in descriptions of faults; `path` leads to the device, through links if need be.
  TtyLink(std::string who, std::string path, const LineSettings& settings, bool xonXoff);
  ~TtyLink() override { Disconnect(); }

  void Connect() override;
  void Disconnect() noexcept override;
  void Progress(short) override {}
  int Handle() const override { return device_.Get(); }
  std::optional<std::size_t> Read(char* to, std::size_t size) override;
  std::optional<std::size_t> Write(std::string_view data) override;

 private:
  Descriptor OpenDevice();
  void TakeExclusively(int device) const;
  void SetUpLine(int device) const;
  [[noreturn]] void Raise(int number, const std::string& reason) const;

  std::string who_;
  termios line_;
  bool pseudoTerminal_ = false;
  Descriptor device_;
};
