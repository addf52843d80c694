#include "tests/platform/opcua/opc_server_process.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QEventLoop>
#include <QTcpServer>
#include <stdexcept>

namespace {

constexpr int kPatience = 15'000;

int FreePort() {
  QTcpServer server;
  server.listen(QHostAddress::LocalHost);
  return server.serverPort();
}

}  // namespace

bool Soon(const std::function<bool()>& condition) {
  QElapsedTimer time;
  time.start();
  while (!condition()) {
    if (time.elapsed() > kPatience) return false;
    QCoreApplication::processEvents(QEventLoop::AllEvents | QEventLoop::WaitForMoreEvents, 5);
  }
  return true;
}

OpcServerProcess::OpcServerProcess(const std::string& folder, const QStringList& words)
    : folder_(folder), words_(words), port_(FreePort()) {
  Start();
}

OpcServerProcess::~OpcServerProcess() { Kill(); }

void OpcServerProcess::Start() {
  process_.setStandardErrorFile(QProcess::nullDevice());
  process_.start(
      "node",
      QStringList{OPC_SERVER, "--port", QString::number(port_), "--folder", QString::fromStdString(folder_)} + words_);
  bool ready = false;
  while (!ready && process_.waitForReadyRead(kPatience)) {
    while (!ready && process_.canReadLine()) ready = process_.readLine().startsWith("ready");
  }
  if (!ready) throw std::runtime_error("the OPC server does not start");
}

void OpcServerProcess::Kill() {
  process_.kill();
  process_.waitForFinished(kPatience);
}

nlohmann::json OpcServerProcess::Ask(const std::string& line) {
  process_.write((line + "\n").c_str());
  while (process_.state() == QProcess::Running && !process_.canReadLine()) process_.waitForReadyRead(kPatience);
  return nlohmann::json::parse(process_.readLine().toStdString());
}

std::string OpcServerProcess::NextLine(int milliseconds) {
  if (!process_.canReadLine()) process_.waitForReadyRead(milliseconds);
  return process_.readLine().trimmed().toStdString();
}

nlohmann::json OpcServerProcess::Get(const std::string& tag) { return Ask("get " + tag); }

void OpcServerProcess::Set(const std::string& tag, const std::string& value) { Ask("set " + tag + " " + value); }

bool OpcServerProcess::Holds(const std::string& tag, const nlohmann::json& value, const std::string& status) {
  nlohmann::json held;
  const bool holds = Soon([&] {
    held = Get(tag);
    return held["value"] == value && held["status"] == status;
  });
  if (!holds) std::fprintf(stderr, "%s\n", held.dump().c_str());
  return holds;
}
