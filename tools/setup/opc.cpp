#include <algorithm>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <vector>

#include "tools/setup/verbs.h"

namespace {

namespace fs = std::filesystem;

/// Where the OPC client keeps the certificates of servers: those that it has met and refused, and those that it takes.
struct Certificates {
  fs::path folder;
  fs::path refused = folder / "rejected";
  fs::path trusted = folder / "trusted/certs";
};

/// Files of a folder whose names hold `part`, in the order of their names.
std::vector<fs::path> CertificatesIn(const fs::path& folder, const std::string& part = {}) {
  std::vector<fs::path> found;
  std::error_code missing;
  for (const fs::directory_entry& entry : fs::directory_iterator(folder, missing)) {
    if (entry.path().filename().string().find(part) != std::string::npos) found.push_back(entry.path());
  }
  std::sort(found.begin(), found.end());
  return found;
}

std::string Content(const fs::path& path) {
  std::ifstream file(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(file), {}};
}

/// The client counts its own certificate among the trusted ones, which says nothing about a server.
void List(const char* title, const fs::path& folder, const fs::path& own) {
  std::vector<fs::path> found = CertificatesIn(folder);
  std::erase_if(found, [&](const fs::path& file) { return Content(file) == Content(own); });
  std::printf("%s%s\n", title, found.empty() ? " none" : "");
  for (const fs::path& file : found) std::printf("  %s\n", file.stem().c_str());
}

int ListAll(const Certificates& certificates) {
  const fs::path own = certificates.folder / "own/certs/tarvex.pem";
  std::error_code missing;
  std::printf("Own certificate, for the server to trust: %s\n",
              fs::exists(own, missing) ? own.c_str() : "none yet; it is made at the first connection");
  List("Refused servers:", certificates.refused, own);
  List("Trusted servers:", certificates.trusted, own);
  return 0;
}

/// Moves the one certificate that `part` means.
int Move(const fs::path& from, const fs::path& to, const std::string& part, const char* done) {
  const std::vector<fs::path> found = CertificatesIn(from, part);
  if (found.empty()) throw SetupToolFault("no certificate there has \"" + part + "\" in its name; opc lists them");
  if (found.size() > 1)
    throw SetupToolFault("several certificates have \"" + part + "\" in their names; say more of one");
  std::error_code fault;
  fs::create_directories(to, fault);
  if (!fault) fs::rename(found.front(), to / found.front().filename(), fault);
  if (fault) throw SetupToolFault(found.front().string() + ": " + fault.message());
  std::printf("%s: %s\n", done, found.front().stem().c_str());
  return 0;
}

}  // namespace

int Opc(const std::string& folder, const Words& words) {
  const Certificates certificates{fs::path(folder) / "Tarvex-OPC"};
  if (words.empty()) return ListAll(certificates);
  if (words.size() == 2 && words[0] == "trust") {
    return Move(certificates.refused, certificates.trusted, words[1], "Trusted from now on");
  }
  if (words.size() == 2 && words[0] == "refuse") {
    return Move(certificates.trusted, certificates.refused, words[1], "Refused at the next connection");
  }
  throw SetupToolFault("opc takes nothing, or trust NAME, or refuse NAME");
}
