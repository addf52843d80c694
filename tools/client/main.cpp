// tarvex-client: looks at a channel of a running manager and sends it commands, over the session bus.
// It is also the example of how a program does that.

#include <charconv>
#include <chrono>
#include <cmath>
#include <cstdio>
#include <ctime>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "tools/client/device_client.h"
#include "tools/client/words.h"

namespace {

using Clock = DeviceClient::Clock;

enum Exit { kSent = 0, kRefused = 1, kNoAnswer = 2, kNoManager = 3, kUsage = 64 };

constexpr int kChannels = 32;
constexpr double kLongest = 1e9;            // seconds
constexpr int kHighestCode = 32767 - 1000;  // the answer to a higher one does not fit CMDSTAT

constexpr const char* kHelp =
    R"(usage: tarvex-client show [CHANNEL]
       tarvex-client watch CHANNEL [--seconds N]
       tarvex-client send CHANNEL CODE [PARM] [--wait SECONDS]

  show    prints the weights and the state of a channel, or of all channels
          that have been opened
  watch   prints each change of a channel, until Ctrl-C or for N seconds
  send    sends the channel command CODE with the parameter PARM (0 if not
          given), and waits for the answer (5 seconds if not given)

CHANNEL is the number shown on the screen, 1 to 32. Negative parameters may
be written as they are. The manager is looked for on the session bus, that is
at the address in DBUS_SESSION_BUS_ADDRESS.

Exit status: 0 done (send: the command went to the device), 1 the channel's
protocol has no such command, 2 no answer in time, 3 no manager, 64 usage.
)";

struct Arguments {
  std::vector<std::string_view> words;
  std::optional<double> seconds;
};

std::optional<double> Number(std::string_view text) {
  double number = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
  if (error != std::errc() || end != text.data() + text.size() || !std::isfinite(number)) return std::nullopt;
  return number;
}

/// 0 if the text is no whole number from 1 to `highest`.
int WholeNumber(std::string_view text, int highest) {
  const std::optional<double> number = Number(text);
  if (!number || *number != std::floor(*number) || *number < 1 || *number > highest) return 0;
  return static_cast<int>(*number);
}

int Usage(const char* complaint) {
  std::fprintf(stderr, "tarvex-client: %s\n%s", complaint, kHelp);
  return kUsage;
}

Clock::time_point After(double seconds) {
  return Clock::now() + std::chrono::duration_cast<Clock::duration>(std::chrono::duration<double>(seconds));
}

std::string WithWords(int number, const std::string& words) {
  return std::to_string(number) + (words.empty() ? "" : "  " + words);
}

void PrintChannel(int channel, const DeviceState& state) {
  std::printf("Channel %d  %s\n", channel, state.description.c_str());
  std::printf("  gross      %s\n", NumberText(state.gross).c_str());
  std::printf("  tare       %s\n", NumberText(state.tare).c_str());
  std::printf("  net        %s\n", NumberText(state.net).c_str());
  std::printf("  status     %s\n", WithWords(state.status, StatusWords(state.status)).c_str());
  std::printf("  command    %d, parameter %s\n", state.command, NumberText(state.parameter).c_str());
  std::printf("  CMDSTAT    %s\n", WithWords(state.answer, AnswerWords(state.answer)).c_str());
}

int ShowAll() {
  constexpr const char* kRow = "%3s  %-24s %12s %12s %12s  %s\n";
  bool any = false;
  for (int channel = 1; channel <= kChannels; ++channel) {
    DeviceClient client(channel);
    client.Read();
    const DeviceState& state = client.State();
    if (state.description.empty()) continue;  // never opened: there is no device
    if (!any) std::printf(kRow, "", "description", "gross", "tare", "net", "status");
    any = true;
    std::printf(kRow, std::to_string(channel).c_str(), state.description.c_str(), NumberText(state.gross).c_str(),
                NumberText(state.tare).c_str(), NumberText(state.net).c_str(),
                WithWords(state.status, StatusWords(state.status)).c_str());
  }
  if (!any) std::puts("No channel is open yet.");
  return 0;
}

int Show(int channel) {
  DeviceClient client(channel);
  client.Read();
  PrintChannel(channel, client.State());
  return 0;
}

std::string TimeOfDay() {
  const auto now = std::chrono::system_clock::now();
  const std::time_t second = std::chrono::system_clock::to_time_t(now);
  const auto part = std::chrono::duration_cast<std::chrono::milliseconds>(now.time_since_epoch()) % 1000;
  char text[32];
  const std::size_t length = std::strftime(text, sizeof text, "%H:%M:%S", std::localtime(&second));
  std::snprintf(text + length, sizeof text - length, ".%03d", static_cast<int>(part.count()));
  return text;
}

std::string FieldText(const DeviceState& state, std::string_view name) {
  if (name == "CDeviceDesc") return "description \"" + state.description + "\"";
  if (name == "CDeviceID") return "id " + std::to_string(state.id);
  if (name == "CCmd") return "command " + std::to_string(state.command);
  if (name == "CCmdParm") return "parameter " + NumberText(state.parameter);
  if (name == "CCmdStat") return "CMDSTAT " + std::to_string(state.answer) + " (" + AnswerWords(state.answer) + ")";
  if (name == "CGross") return "gross " + NumberText(state.gross);
  if (name == "CTare") return "tare " + NumberText(state.tare);
  if (name == "CNet") return "net " + NumberText(state.net);
  const std::string words = StatusWords(state.status);
  return "status " + std::to_string(state.status) + (words.empty() ? "" : " (" + words + ")");
}

/// Empty if the news tell nothing new.
std::string NewsText(const DeviceNews& news, const DeviceState& before, const DeviceState& state) {
  switch (news.kind) {
    case DeviceNews::Kind::Update:
      return "CUpdate";
    case DeviceNews::Kind::ManagerLeft:
      return "the manager has left the bus";
    case DeviceNews::Kind::ManagerCame:
      return "the manager is on the bus";
    case DeviceNews::Kind::Fields:
      break;
  }
  std::string line;
  for (const std::string& field : news.fields) {
    const std::string text = FieldText(state, field);
    if (text != FieldText(before, field)) line += (line.empty() ? "" : ", ") + text;
  }
  return line;
}

int Watch(int channel, Clock::time_point end) {
  DeviceClient client(channel);
  client.Read();
  PrintChannel(channel, client.State());
  std::fflush(stdout);
  DeviceState before = client.State();
  while (const auto news = client.Wait(end)) {
    const std::string text = NewsText(*news, before, client.State());
    before = client.State();
    if (text.empty()) continue;
    std::printf("%s  %s\n", TimeOfDay().c_str(), text.c_str());
    std::fflush(stdout);
  }
  return 0;
}

int Sent(int code) {
  std::printf("Command %d was sent to the device.\n", code);
  return kSent;
}

int Refused(int channel, int code) {
  std::printf("Refused: the protocol of channel %d has no command %d, or its line is gone.\n", channel, code);
  return kRefused;
}

/// Takes the command back: one that is still waiting would act whenever its row is enabled or the channel is
/// opened, long after anyone expects it.
int GiveUp(DeviceClient& client, int code) {
  constexpr int kTries = 100;  // a hand-back in between puts the command into the object again
  for (int tries = 0; tries < kTries && client.State().command == code; ++tries) {
    client.Command(0, 0);
    client.Read();
  }
  std::printf(
      "No answer: command %d was not taken up in time and is withdrawn.\n"
      "The channel may be disabled, not connected or not bidirectional, or the command not enabled in its protocol.\n",
      code);
  return kNoAnswer;
}

int Send(int channel, int code, double parameter, Clock::time_point end) {
  DeviceClient client(channel);
  client.Read();
  const DeviceState& state = client.State();
  // An answer that still stands would be taken for the one to this command.
  if (state.answer != 0) client.Command(0, 0);
  client.Command(static_cast<std::int16_t>(code), parameter);
  for (bool late = false;; late = Clock::now() >= end || !client.Wait(end)) {
    client.Read();
    if (state.answer == code + 100) return Sent(code);
    if (state.answer == code + 1000) return Refused(channel, code);
    if (late) return GiveUp(client, code);
    // The manager handed the idle state back between the fields and CDoUpdate: the command was lost.
    const bool lost = state.command == 0 && state.answer == 0;
    if (lost) client.Command(static_cast<std::int16_t>(code), parameter);
  }
}

/// Takes "--seconds N" and "--wait N" out of the arguments. False if the number is missing or not a time.
bool Sort(int count, char** texts, Arguments& arguments) {
  for (int index = 1; index < count; ++index) {
    const std::string_view text = texts[index];
    if (text != "--seconds" && text != "--wait") {
      arguments.words.push_back(text);
      continue;
    }
    if (++index >= count) return false;
    arguments.seconds = Number(texts[index]);
    if (!arguments.seconds || *arguments.seconds < 0 || *arguments.seconds > kLongest) return false;
  }
  return true;
}

int Run(const Arguments& arguments) {
  const auto& words = arguments.words;
  const std::string_view verb = words.empty() ? "" : words[0];
  if (verb == "show" && words.size() == 1) return ShowAll();

  const int channel = words.size() > 1 ? WholeNumber(words[1], kChannels) : 0;
  if (verb != "show" && verb != "watch" && verb != "send") return Usage("show, watch or send?");
  if (channel == 0) return Usage("CHANNEL is a number from 1 to 32");
  if (verb == "show" && words.size() == 2) return Show(channel);
  if (verb == "watch" && words.size() == 2) {
    return Watch(channel, arguments.seconds ? After(*arguments.seconds) : Clock::time_point::max());
  }
  if (verb != "send" || words.size() < 3 || words.size() > 4) return Usage("wrong number of arguments");
  const int code = WholeNumber(words[2], kHighestCode);
  if (code == 0) return Usage("CODE is a whole number from 1 to 31767");
  const auto parameter = words.size() == 4 ? Number(words[3]) : 0.0;
  if (!parameter) return Usage("PARM is a number");
  return Send(channel, code, *parameter, After(arguments.seconds.value_or(5)));
}

}  // namespace

int main(int count, char** texts) {
  for (int index = 1; index < count; ++index) {
    if (std::string_view(texts[index]) == "--help" || std::string_view(texts[index]) == "-h") {
      std::fputs(kHelp, stdout);
      return 0;
    }
  }
  Arguments arguments;
  if (!Sort(count, texts, arguments)) return Usage("--seconds and --wait need a number of seconds");
  try {
    return Run(arguments);
  } catch (const NoManager& fault) {
    std::fprintf(stderr, "tarvex-client: %s\n", fault.what());
    return kNoManager;
  }
}
