#pragma once

#include <string>
#include <string_view>

#include "tools/sim/plant.h"

namespace sim {

/// What a person can do to a running plant, one line of words at a time.
struct Answer {
  std::string text;  ///< for the person; empty for an empty line
  bool end = false;  ///< the plant is to end
};

/// Carries out a line such as "pull 3" or "silence 3 5" and says what was done or what is wrong with it.
Answer Obey(Plant& plant, std::string_view line);

/// All words with what they do.
std::string_view HelpOnWords();

}  // namespace sim
