#pragma once

#include <QProcess>
#include <string>

/// A session bus of the test's own, in a folder of its own, that it may stop and kill. The environment of the
/// test names its address from the beginning, whether it runs or not.
class BusDaemon {
 public:
  BusDaemon();
  ~BusDaemon();
  BusDaemon(const BusDaemon&) = delete;
  BusDaemon& operator=(const BusDaemon&) = delete;

  /// Returns when clients can connect. `serviceFolder` is where the bus finds activation files, if any.
  void Start(const std::string& serviceFolder = {});
  void Kill();
  /// Stops the bus in its tracks: its sockets stay and take what their buffers hold.
  void Hang();
  void GoOn();

  const std::string& Folder() const { return folder_; }

 private:
  std::string folder_;
  QProcess process_;
};
