#include "tools/sim/words.h"

#include <algorithm>
#include <iterator>
#include <optional>
#include <vector>

#include "tools/sim/text.h"

namespace sim {

namespace {

constexpr double kForEver = 1e12;  ///< seconds
constexpr double kUsual = 5;       ///< seconds of a fault for which no time is given
constexpr double kHeaviest = 1e7;

/// One word with what stands behind it: "silence 3 5s".
struct Order {
  Plant& plant;
  Device& device;
  std::string_view word;
  std::string_view rest;  ///< empty if nothing follows the COM number
};

/// What went wrong, or nothing.
using Refusal = std::optional<std::string>;

Refusal Pull(const Order& order) {
  order.device.Faults().Start(Fault::Unplug, order.plant.Now(), kForEver);
  return std::nullopt;
}

Refusal Plug(const Order& order) {
  order.device.Faults().Stop(Fault::Unplug);
  return std::nullopt;
}

Refusal Disturb(const Order& order) {
  const Fault fault = *FaultOf(order.word);
  if (order.rest == "off") {
    order.device.Faults().Stop(fault);
    return std::nullopt;
  }
  const std::optional<double> seconds = order.rest.empty()   ? kUsual
                                        : order.rest == "on" ? kForEver
                                                             : Seconds(order.rest);
  if (!seconds) return "For how long? Write seconds, on or off.";
  order.device.Faults().Start(fault, order.plant.Now(), *seconds);
  return std::nullopt;
}

Refusal Stop(const Order& order) {
  order.device.Faults().StopAll();
  return std::nullopt;
}

Refusal Load(const Order& order) {
  if (order.rest == "auto") {
    order.device.Platform().LetGo();
    return std::nullopt;
  }
  const std::optional<double> weight = Number(order.rest);
  if (!weight || *weight < -kHeaviest || *weight > kHeaviest) return "Which weight? Write: load COM WEIGHT";
  order.device.Platform().PutOn(*weight);
  return std::nullopt;
}

struct Word {
  std::string_view name;
  Refusal (*carryOut)(const Order&);
};

constexpr Word kWords[] = {
    {"pull", Pull},   {"plug", Plug},     {"silence", Disturb}, {"garbage", Disturb},
    {"cut", Disturb}, {"split", Disturb}, {"stop", Stop},       {"load", Load},
};

std::string ObeyOrder(Plant& plant, const std::vector<std::string_view>& words) {
  const auto* word =
      std::find_if(std::begin(kWords), std::end(kWords), [&](const Word& known) { return known.name == words[0]; });
  if (word == std::end(kWords)) return "There is no word \"" + std::string(words[0]) + "\"; try help.";
  const std::optional<int> com = words.size() > 1 ? WholeNumber(words[1]) : std::nullopt;
  if (!com) return "Which device? Write its COM number behind \"" + std::string(words[0]) + "\".";
  Device* const device = plant.Find(*com);
  if (device == nullptr) return "This plant has no COM" + std::string(words[1]) + ".";
  if (words.size() > 3) return "There is too much behind \"" + std::string(words[2]) + "\".";
  const Order order{plant, *device, words[0], words.size() > 2 ? words[2] : std::string_view{}};
  if (const Refusal refusal = word->carryOut(order)) return *refusal;
  return "COM" + std::string(words[1]) + " " + device->Settings().name + ": " + std::string(words[0]) +
         (order.rest.empty() ? "" : " " + std::string(order.rest));
}

}  // namespace

std::string_view HelpOnWords() {
  return "  pull COM              take the cable out of a device\n"
         "  plug COM              put it back\n"
         "  silence COM [TIME]    the device neither sends nor listens\n"
         "  garbage COM [TIME]    random bytes in front of each frame\n"
         "  cut COM [TIME]        frames that end too early\n"
         "  split COM [TIME]      frames in small pieces\n"
         "  stop COM              end every fault of the device, the planned ones too\n"
         "  load COM WEIGHT       put this weight on and leave it there\n"
         "  load COM auto         go back to the loads of the plant file\n"
         "  pull, plug, silence vN   the same with terminal N; show vN tells what it has done\n"
         "  help                  these lines\n"
         "  quit                  end the plant\n"
         "TIME is in seconds, or on, or off; without it a fault lasts 5 seconds.\n";
}

Answer Obey(Plant& plant, std::string_view line) {
  const std::vector<std::string_view> words = Words(line);
  if (words.empty()) return {};
  if (words[0] == "help") return {std::string(HelpOnWords())};
  if (words[0] == "quit") return {"The plant ends.\n", true};
  return {ObeyOrder(plant, words) + "\n"};
}

}  // namespace sim
