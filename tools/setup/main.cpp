// tarvex-setup: the setup screen for a plant without a screen, and what helps with a strange device.

#include <cstdio>
#include <filesystem>

#include "platform/posix/program_folder.h"
#include "tools/setup/manager/running_manager.h"
#include "tools/setup/verbs.h"

namespace {

enum Exit { kNothingDone = 2 };

struct Verb {
  const char* name;
  int (*run)(const std::string& folder, const Words& words);
};

constexpr Verb kVerbs[] = {{"show", Show},     {"set", Set}, {"check", Check},
                           {"listen", Listen}, {"try", Try}, {"opc", Opc}};

constexpr const char* kHelp =
    R"(usage: tarvex-setup [--home FOLDER] VERB ...

  show [TARGET]                 prints the settings, as they are set below
  set TARGET NAME=VALUE ...     changes them, all or none, and has a running
                                manager take them
  check [TARGET]                names every questionable setting
  listen PORT [SETTINGS]        shows what a line sends (settings: 9600,N,8,1)
         --record FILE          ... and records it for try and tarvex-replay
         --seconds N            ... for so long, else until Ctrl-C
         --try-settings         tries all line settings, and says which fit
  try PROTOCOL CAPTURE          shows what a protocol makes of each stream
  opc                           lists the certificates of OPC servers, with
                                their SHA-1 fingerprints
  opc trust NAME                takes a refused one, after you have compared
                                it; NAME is any part of its name
  opc refuse NAME               and the way back

TARGET is a channel, 1 to 32, or "protocol N", 0 to 41, or "all".
NAME is a name that show prints, in any case of letters, blanks left out or
not: 'Device Desc.', devicedesc and tDeviceDesc are the same. A row of the
status table is row(N), with its six texts and | between them; insert(N) puts
one in front of row N, delete(N)= takes it away.
Formats of the program itself are changed with the word --unprotect only.
PORT is COM1 to COM68, a device or tcp://host:port. PROTOCOL is a number, a
name or a format file.

The folder is $TARVEX_HOME, else that of the user. Nothing is changed in it
but by set and opc. No port is opened but by listen.

Exit status: 0 done, 1 check has found something, or a manager could not be
reached, 2 nothing was done.
)";

int Run(Words words) {
  std::string folder = ProgramFolder();
  if (words.size() >= 2 && words[0] == "--home") {
    folder = std::filesystem::absolute(words[1]).lexically_normal().string();
    while (folder.size() > 1 && folder.ends_with('/')) folder.pop_back();
    words.erase(words.begin(), words.begin() + 2);
  }
  if (words.empty() || words[0] == "--help" || words[0] == "-h") {
    std::fputs(kHelp, words.empty() ? stderr : stdout);
    return words.empty() ? kNothingDone : 0;
  }
  const std::string name = words[0];
  words.erase(words.begin());
  for (const Verb& verb : kVerbs) {
    if (name == verb.name) return verb.run(folder, words);
  }
  throw SetupToolFault("there is no verb \"" + name + "\"; --help lists them");
}

int Complain(const std::string& text) {
  std::fprintf(stderr, "tarvex-setup: %s\n", text.c_str());
  return kNothingDone;
}

}  // namespace

int main(int count, char** words) {
  try {
    return Run(Words(words + 1, words + count));
  } catch (const RunTimeError& fault) {
    return Complain(fault.Description());
  } catch (const std::exception& fault) {
    return Complain(fault.what());
  }
}
