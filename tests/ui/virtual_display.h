#pragma once

#include <QProcess>
#include <stdexcept>

/// Starts a display of 1024 x 768 that nobody sees, and returns its name.
inline QByteArray StartVirtualDisplay(QProcess& server) {
  server.start("Xvfb", {"-displayfd", "1", "-screen", "0", "1024x768x24", "-nolisten", "tcp"});
  QByteArray number;
  while (!number.endsWith('\n') && server.waitForReadyRead(10'000)) number += server.readAllStandardOutput();
  if (number.isEmpty()) throw std::runtime_error("no virtual display");
  return ":" + number.trimmed();
}
