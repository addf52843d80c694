#include "platform/vant/vant_binding.h"

#include <dlfcn.h>
#include <unistd.h>

#include <cstdlib>

namespace {

constexpr const char* kLibrary = "libvantapi32.so";

std::string FileToBind(const std::string& programFolder) {
  if (const char* const named = std::getenv("TARVEX_VANTAPI"); named != nullptr && *named != '\0') return named;
  const std::string own = programFolder + "/" + kLibrary;
  return access(own.c_str(), F_OK) == 0 ? own : kLibrary;
}

std::string LinkerFault() {
  const char* const fault = dlerror();
  return fault == nullptr ? "unknown reason" : fault;
}

template <typename Entry>
bool Take(void* library, const char* name, Entry& entry) {
  entry = reinterpret_cast<Entry>(dlsym(library, name));
  return entry != nullptr;
}

}  // namespace

std::string BindVantLibrary(const std::string& programFolder, VantEntries& entries) {
  const std::string file = FileToBind(programFolder);
  void* const library = dlopen(file.c_str(), RTLD_NOW | RTLD_LOCAL);
  if (library == nullptr) return "Terminal library " + file + ": " + LinkerFault();
  VantEntries found;
  void* unused = nullptr;  // the two that write to a display tell that it is this library
  const bool complete = Take(library, "VantRegisterProcess", found.registerProcess) &&
                        Take(library, "VantCloseProcess", found.closeProcess) &&
                        Take(library, "VantRead", found.read) && Take(library, "VantWrite", found.write) &&
                        Take(library, "VantSendKeystroke", found.sendKeystroke) &&
                        Take(library, "VantDisplayText", unused) && Take(library, "VantResetDisplay", unused);
  if (!complete) {
    const std::string fault = "Terminal library " + file + " lacks an entry: " + LinkerFault();
    dlclose(library);
    return fault;
  }
  entries = found;
  return {};
}
