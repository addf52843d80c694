#pragma once

#include <QProcess>
#include <QTimer>
#include <functional>
#include <nlohmann/json.hpp>
#include <string>

/// The helper process that speaks OPC UA, one line of JSON a message on its standard input and output. It is started
/// when it is first needed, and again with a growing pause if it ends, hangs, floods or says nothing sensible; it ends
/// with this object, and with this process however that ends. Nothing here waits for it but the destructor.
class OpcUaHelper {
 public:
  struct Hooks {
    /// Where the certificates are kept.
    std::function<std::string()> certificateFolder;
    /// It has been started, and knows nothing yet.
    std::function<void()> started;
    std::function<void(const nlohmann::json&)> message;
    /// It is not there, and why.
    std::function<void(const std::string&)> lost;
  };

  /// `folder` holds helper.js.
  OpcUaHelper(std::string folder, Hooks hooks);
  OpcUaHelper(const OpcUaHelper&) = delete;
  OpcUaHelper& operator=(const OpcUaHelper&) = delete;
  /// Gives the helper two seconds to write what it was given last.
  ~OpcUaHelper();

  /// Starts it unless it runs or is waited for.
  void Need();
  bool Running() const { return running_; }
  /// Hands a message over; dropped if the helper does not run.
  void Send(const nlohmann::json& message);
  /// False while it does not take what it was sent.
  bool TakesMore() const;

 private:
  void Start();
  void ReadLines();
  void ReadErrors();
  void TakeLine(const QByteArray& line);
  void Watch();
  void GiveUp(const std::string& why);
  void Ended();

  std::string folder_;
  Hooks hooks_;
  QProcess process_;
  QTimer retry_;
  QTimer watch_;
  bool running_ = false;
  std::string why_;        ///< what it is given up for, or has said of its end
  std::string lastError_;  ///< first line that it wrote to standard error about a fault
  int pauseSeconds_ = 0;
  int secondsUp_ = 0;
  int secondsSilent_ = 0;
  int linesThisSecond_ = 0;
};
