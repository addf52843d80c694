#pragma once

#include <functional>
#include <string>

/// What a program that changes settings files may ask of the running system.
struct SetupCalls {
  std::function<void(int number)> reloadChannel;  ///< takes a display number; what it raises is the caller's answer
  std::function<void(int proto)> reloadProtocol;  ///< likewise
  std::function<int()> editedChannel;             ///< display number of the channel on the setup screen, 0 for none
  std::string folder;                             ///< where the files lie that the system works with
};
