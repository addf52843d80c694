#pragma once

#include <string>
#include <vector>

#include "tools/setup/settings_folder.h"

/// What follows the verb on the command line.
using Words = std::vector<std::string>;

/// The verbs return the exit status: 0 done, 1 something was found, 2 nothing was done. They raise `SetupToolFault`,
/// and what the files raise.
int Show(const std::string& folder, const Words& words);
int Set(const std::string& folder, const Words& words);
int Check(const std::string& folder, const Words& words);
int Listen(const std::string& folder, const Words& words);
int Try(const std::string& folder, const Words& words);
int Opc(const std::string& folder, const Words& words);

/// What a verb is about: a channel (0 to 31), a protocol (0 to 41), or everything.
struct Target {
  enum class Kind { Channel, Protocol, All } kind = Kind::All;
  int number = 0;
};

/// Reads "3", "channel 3", "protocol 10" or "all" from the front of `words` and takes it away. Without a word: all.
Target TakeTarget(Words& words);
