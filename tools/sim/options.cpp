#include "tools/sim/options.h"

#include <algorithm>
#include <iterator>

#include "tools/sim/text.h"

namespace sim {

namespace {

constexpr int kMostScales = 68;  ///< as many as there are COM numbers

template <typename Value>
Value Within(std::optional<Value> value, Value least, Value most, std::string_view expected) {
  if (!value || *value < least || *value > most) throw UsageError(std::string(expected));
  return *value;
}

struct Option {
  std::string_view name;
  void (*set)(Options&, std::string_view value);
};

using O = Options;
using V = std::string_view;

constexpr Option kOptions[] = {
    {"--plant", [](O& o, V v) { o.plant = v; }},
    {"--scales",
     [](O& o, V v) { o.scales = Within(WholeNumber(v), 1, kMostScales, "a whole number of scales from 1 to 68"); }},
    {"--rate", [](O& o, V v) { o.rate = Within(Number(v), 0.1, 1000.0, "frames a second from 0.1 to 1000"); }},
    {"--links", [](O& o, V v) { o.links = v; }},
    {"--ports", [](O& o, V v) { o.ports = v; }},
    {"--control", [](O& o, V v) { o.control = v; }},
    {"--vant", [](O& o, V v) { o.vant = v; }},
    {"--seed",
     [](O& o, V v) {
       o.seed = static_cast<std::uint32_t>(Within(WholeNumber(v), 0, 2000000000, "a whole number from 0 on"));
     }},
    {"--seconds", [](O& o, V v) { o.seconds = Within(Seconds(v), 0.0, 1e9, "a number of seconds"); }},
};

}  // namespace

Options ReadOptions(const std::vector<std::string_view>& arguments) {
  Options options;
  for (std::size_t index = 0; index < arguments.size(); ++index) {
    const std::string name(arguments[index]);
    options.help = options.help || name == "--help";
    options.version = options.version || name == "--version";
    if (options.help || options.version) return options;
    const auto* option =
        std::find_if(std::begin(kOptions), std::end(kOptions), [&](const Option& known) { return known.name == name; });
    if (option == std::end(kOptions)) throw UsageError("There is no option " + name + ".");
    if (++index == arguments.size() || arguments[index].empty()) throw UsageError(name + " needs a value behind it.");
    try {
      option->set(options, arguments[index]);
    } catch (const UsageError& expected) {
      throw UsageError(name + " needs " + expected.what() + ", not \"" + std::string(arguments[index]) + "\".");
    }
  }
  if (options.plant.empty() == (options.scales == 0)) throw UsageError("Give either --plant FILE or --scales N.");
  return options;
}

std::string_view HelpOnOptions() {
  return "Usage: tarvex-sim --plant FILE | --scales N [options]\n"
         "  --plant FILE     devices as the file describes them\n"
         "  --scales N       N plain scales whose weight changes all the time, for measurements\n"
         "  --rate R         frames a second of the plain scales (20 if not given)\n"
         "  --links FOLDER   where the links of the pseudo-terminals are made (if not given, the folder\n"
         "                   that the plant file names, or the present one)\n"
         "  --ports FILE     write the addresses of all devices as a Tarvex-Ports.Cfg\n"
         "  --control PATH   make a pipe there that takes the same words as standard input\n"
         "  --vant PATH      make a socket there, behind which the terminals of the plant are reached\n"
         "  --seed N         another course of chance; the same one gives the same weights\n"
         "  --seconds N      end by itself\n"
         "  --version, --help\n";
}

}  // namespace sim
