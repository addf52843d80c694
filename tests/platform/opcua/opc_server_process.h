#pragma once

#include <QProcess>
#include <QStringList>
#include <nlohmann/json.hpp>
#include <string>

/// Runs the event loop until `condition` holds; false after fifteen seconds.
bool Soon(const std::function<bool()>& condition);

/// A UA server of another kind than ours, as a process of its own with the seven tags of two scales.
class OpcServerProcess {
 public:
  /// `folder` takes its certificates; `words` are options of the server. Returns when clients can connect.
  explicit OpcServerProcess(const std::string& folder, const QStringList& words = {});
  ~OpcServerProcess();
  OpcServerProcess(const OpcServerProcess&) = delete;
  OpcServerProcess& operator=(const OpcServerProcess&) = delete;

  std::string Endpoint() const { return "opc.tcp://localhost:" + std::to_string(port_); }
  void Kill();
  void Start();
  /// What a tag holds: value, status (its name) and time (milliseconds of the wall clock).
  nlohmann::json Get(const std::string& tag);
  void Set(const std::string& tag, const std::string& value);
  /// True when the tag comes to hold `value` with `status`.
  bool Holds(const std::string& tag, const nlohmann::json& value, const std::string& status = "Good");
  /// The next line that it prints by itself, without its end; empty if there was none for `milliseconds`.
  std::string NextLine(int milliseconds);
  qint64 ProcessNumber() const { return process_.processId(); }

 private:
  nlohmann::json Ask(const std::string& line);

  std::string folder_;
  QStringList words_;
  int port_;
  QProcess process_;
};
