#pragma once

#include <string>

/// How to reach an OPC server and who asks.
struct OpcServer {
  std::string endpoint{};       ///< "opc.tcp://host:port" and what follows
  std::string mode = "None";    ///< "None", "Sign" or "SignAndEncrypt"
  std::string policy = "None";  ///< "None" or "Basic256Sha256"
  std::string user{};           ///< empty: nobody in particular
  std::string password{};
};
