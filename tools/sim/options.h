#pragma once

#include <cstdint>
#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

namespace sim {

/// The command line of tarvex-sim.
struct Options {
  std::string plant;  ///< path of the plant file; empty for a plain plant
  int scales = 0;     ///< of a plain plant
  double rate = 20;   ///< frames a second of its scales
  std::string links;
  std::string ports;
  std::string control;
  std::string vant;  ///< socket of the terminals' network
  std::optional<std::uint32_t> seed;
  double seconds = 0;  ///< 0 runs until it is told to end
  bool help = false;
  bool version = false;
};

/// A command line that cannot be understood; the text says what is wrong with it.
class UsageError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

/// `arguments` without the program's name. Raises `UsageError`.
Options ReadOptions(const std::vector<std::string_view>& arguments);

std::string_view HelpOnOptions();

}  // namespace sim
