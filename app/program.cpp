#include "app/program.h"

#include <cstdlib>
#include <exception>
#include <iostream>
#include <string_view>

#include "app/shipped_formats.h"
#include "core/startup.h"
#include "platform/posix/program_folder.h"

std::string CommandLine(int argc, char** argv) {
  std::string line;
  for (int index = 1; index < argc; ++index) line += (index > 1 ? " " : "") + std::string(argv[index]);
  return line;
}

int RunProgram(const char* name, const char* help, int argc, char** argv, int (*run)(int argc, char** argv)) {
  const std::string_view first = argc > 1 ? argv[1] : "";
  if (first == "--help") return (std::cout << help).good() ? 0 : 1;
  if (first == "--version") return (std::cout << name << " " << RevisionText() << "\n").good() ? 0 : 1;
  try {
    return run(argc, argv);
  } catch (const std::exception& fault) {
    std::cerr << name << ": " << fault.what() << "\n";
    return 1;
  }
}

std::string ReadyProgramFolder() {
  std::string folder = ProgramFolder();
  PrepareProgramFolder(folder, ShippedFormats());
  return folder;
}

bool IsSet(const char* name) {
  const char* value = std::getenv(name);
  return value != nullptr && std::string_view(value) == "1";
}
