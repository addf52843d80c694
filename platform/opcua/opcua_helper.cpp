#include "platform/opcua/opcua_helper.h"

#include <algorithm>
#include <cctype>
#include <chrono>
#include <utility>

#include "platform/qt/text.h"

namespace {

using nlohmann::json;

constexpr int kLongestPause = 30;         ///< seconds between two starts
constexpr int kLongestSilence = 4;        ///< seconds without an answer
constexpr int kMostLinesASecond = 5'000;  ///< 32 channels at 40 exchanges a second are a quarter of it
constexpr qint64 kLongestLine = 1 << 20;
constexpr qint64 kMostWaiting = 1 << 18;  ///< bytes that it may not have taken
constexpr int kFarewellMilliseconds = 2'000;

}  // namespace

OpcUaHelper::OpcUaHelper(std::string folder, Hooks hooks) : folder_(std::move(folder)), hooks_(std::move(hooks)) {
  retry_.setSingleShot(true);
  watch_.setInterval(std::chrono::seconds(1));
  QObject::connect(&retry_, &QTimer::timeout, [this] { Start(); });
  QObject::connect(&watch_, &QTimer::timeout, [this] { Watch(); });
  QObject::connect(&process_, &QProcess::readyReadStandardOutput, [this] { ReadLines(); });
  QObject::connect(&process_, &QProcess::readyReadStandardError, [this] { ReadErrors(); });
  QObject::connect(&process_, &QProcess::finished, [this] { Ended(); });
  QObject::connect(&process_, &QProcess::errorOccurred, [this](QProcess::ProcessError error) {
    if (error != QProcess::FailedToStart) return;
    why_ = "Node.js is missing: install the packages nodejs and npm";
    Ended();
  });
}

OpcUaHelper::~OpcUaHelper() {
  for (QTimer* timer : {&retry_, &watch_}) timer->stop();
  process_.disconnect();
  if (process_.state() == QProcess::NotRunning) return;
  Send({{"op", "end"}});
  process_.closeWriteChannel();
  if (process_.waitForFinished(kFarewellMilliseconds)) return;
  process_.kill();
  process_.waitForFinished(kFarewellMilliseconds);
}

void OpcUaHelper::Need() {
  if (process_.state() == QProcess::NotRunning && !retry_.isActive()) Start();
}

void OpcUaHelper::Start() {
  why_.clear();
  lastError_.clear();
  secondsUp_ = secondsSilent_ = linesThisSecond_ = 0;
  watch_.start();
  process_.start("node", {ToText(folder_ + "/helper.js"), ToText(hooks_.certificateFolder())});
}

void OpcUaHelper::Send(const json& message) {
  if (!running_) return;
  process_.write(QByteArray::fromStdString(message.dump(-1, ' ', false, json::error_handler_t::replace) + "\n"));
}

bool OpcUaHelper::TakesMore() const { return running_ && process_.bytesToWrite() < kMostWaiting; }

void OpcUaHelper::ReadLines() {
  secondsSilent_ = 0;
  while (process_.canReadLine()) {
    if (++linesThisSecond_ > kMostLinesASecond) return GiveUp("floods");
    TakeLine(process_.readLine());
    if (process_.state() != QProcess::Running) return;
  }
  if (process_.bytesAvailable() > kLongestLine) GiveUp("sends a line without an end");
}

void OpcUaHelper::TakeLine(const QByteArray& line) {
  const json message = json::parse(line.begin(), line.end(), nullptr, false);
  if (!message.is_object()) return GiveUp("says nothing sensible: " + line.left(80).trimmed().toStdString());
  if (message.contains("fatal")) {
    why_ = message.value("fatal", "");
  } else if (message.contains("hello")) {
    running_ = true;
    hooks_.started();
  } else if (!message.contains("pong")) {
    hooks_.message(message);
  }
}

void OpcUaHelper::ReadErrors() {
  for (const QByteArray& line : process_.readAllStandardError().split('\n')) {
    const qsizetype at = line.indexOf("Error");
    const bool beginsWithIt =
        at >= 0 && std::all_of(line.begin(), line.begin() + at, [](char c) { return std::isalpha(c); });
    if (lastError_.empty() && beginsWithIt) lastError_ = line.left(200).trimmed().toStdString();
  }
}

/// Once a second.
void OpcUaHelper::Watch() {
  linesThisSecond_ = 0;
  if (++secondsUp_ > 60) pauseSeconds_ = 0;
  if (++secondsSilent_ > kLongestSilence) return GiveUp("hangs");
  Send({{"op", "ping"}});
}

void OpcUaHelper::GiveUp(const std::string& why) {
  why_ = "the OPC helper " + why;
  process_.kill();
}

void OpcUaHelper::Ended() {
  running_ = false;
  watch_.stop();
  ReadErrors();
  pauseSeconds_ = std::clamp(2 * pauseSeconds_, 1, kLongestPause);
  retry_.start(std::chrono::seconds(pauseSeconds_));
  if (why_.empty()) {
    why_ = "the OPC helper has ended";
    if (!lastError_.empty()) why_ += ": " + lastError_;
  }
  hooks_.lost(why_);
}
