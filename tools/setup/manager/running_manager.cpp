#include "tools/setup/manager/running_manager.h"

#include <sys/stat.h>

#include <cstring>
#include <string_view>
#include <utility>

#include "platform/posix/posix_system.h"
#include "platform/run_time_error.h"

namespace {

constexpr const char* kManager = "org.tarvex.Manager";
constexpr const char* kPath = "/org/tarvex/Setup";
constexpr const char* kInterface = "org.tarvex.Setup";
constexpr std::uint64_t kLongestAnswer = 10'000'000;  // microseconds

/// Also under another name, through links.
bool SameFolder(const std::string& left, const std::string& right) {
  struct stat first {};
  struct stat second {};
  return stat(left.c_str(), &first) == 0 && stat(right.c_str(), &second) == 0 && first.st_dev == second.st_dev &&
         first.st_ino == second.st_ino;
}

/// An error that came as an answer, or one of the way there.
class BusError {
 public:
  BusError() = default;
  BusError(const BusError&) = delete;
  BusError& operator=(const BusError&) = delete;
  ~BusError() { sd_bus_error_free(&error_); }

  sd_bus_error* Target() { return &error_; }
  bool Is(const char* name) const { return sd_bus_error_has_name(&error_, name) > 0; }
  bool IsOfManager() const {
    return error_.name != nullptr && std::string_view(error_.name).starts_with("org.tarvex.Error.");
  }
  std::string Text(int result) const { return error_.message != nullptr ? error_.message : std::strerror(-result); }

 private:
  sd_bus_error error_ = SD_BUS_ERROR_NULL;
};

}  // namespace

RunningManager::RunningManager(std::string folder) : folder_(std::move(folder)) {}

bool RunningManager::IsThere() const {
  try {
    return PosixSystem::CopyRunsIn(folder_);
  } catch (const RunTimeError& fault) {
    throw ManagerFault(fault.Description());
  }
}

void RunningManager::RaiseUnreachable(const std::string& why) const {
  throw ManagerFault("A manager runs on " + folder_ + ", but " + why +
                     ": press X and Continue there, or restart it, for the changes to hold.");
}

RunningManager::Message RunningManager::Answer(sd_bus* bus, const Message& call) const {
  BusError error;
  sd_bus_message* answer = nullptr;
  const int result = sd_bus_call(bus, call.get(), kLongestAnswer, error.Target(), &answer);
  if (result >= 0) return Message(answer);
  if (error.IsOfManager()) {
    throw ManagerFault("The manager on " + folder_ + " goes on with what it had. " + error.Text(result) + ".");
  }
  if (error.Is(SD_BUS_ERROR_NAME_HAS_NO_OWNER)) RaiseUnreachable("it is not on this session bus");
  if (error.Is(SD_BUS_ERROR_UNKNOWN_OBJECT) || error.Is(SD_BUS_ERROR_UNKNOWN_METHOD) ||
      error.Is(SD_BUS_ERROR_UNKNOWN_INTERFACE) || error.Is(SD_BUS_ERROR_UNKNOWN_PROPERTY)) {
    RaiseUnreachable("it is of a version that takes no changes while it runs");
  }
  if (error.Is(SD_BUS_ERROR_NO_REPLY) || result == -ETIMEDOUT) RaiseUnreachable("it does not answer");
  RaiseUnreachable("the session bus cannot be reached (" + error.Text(result) + ")");
}

RunningManager::Found RunningManager::Find() const {
  sd_bus* opened = nullptr;
  const int result = sd_bus_open_user(&opened);
  if (result < 0) {
    RaiseUnreachable("there is no session bus (" +
                     std::string(result == -ENOMEDIUM ? "the environment names none" : std::strerror(-result)) + ")");
  }
  Found found{Bus(opened), {}};

  sd_bus_message* call = nullptr;
  const char* text = nullptr;
  sd_bus_message_new_method_call(opened, &call, "org.freedesktop.DBus", "/org/freedesktop/DBus", "org.freedesktop.DBus",
                                 "GetNameOwner");
  const Message whoOwns(call);
  sd_bus_message_append(call, "s", kManager);
  const Message owner = Answer(opened, whoOwns);
  if (sd_bus_message_read(owner.get(), "s", &text) > 0) found.name = text;

  const Message folder = Property(found, "Folder");
  if (sd_bus_message_read(folder.get(), "v", "s", &text) <= 0 || !SameFolder(text, folder_)) {
    RaiseUnreachable("the one on this session bus works on another folder, " + std::string(text));
  }
  return found;
}

RunningManager::Message RunningManager::Property(const Found& manager, const char* property) const {
  sd_bus_message* call = nullptr;
  sd_bus_message_new_method_call(manager.bus.get(), &call, manager.name.c_str(), kPath,
                                 "org.freedesktop.DBus.Properties", "Get");
  const Message get(call);
  sd_bus_message_append(call, "ss", kInterface, property);
  return Answer(manager.bus.get(), get);
}

int RunningManager::EditedChannel() {
  const Found manager = Find();
  std::int32_t number = 0;
  sd_bus_message_read(Property(manager, "EditedChannel").get(), "v", "i", &number);
  return number;
}

void RunningManager::Reload(const char* method, std::int32_t number) const {
  const Found manager = Find();
  sd_bus_message* call = nullptr;
  sd_bus_message_new_method_call(manager.bus.get(), &call, manager.name.c_str(), kPath, kInterface, method);
  const Message reload(call);
  sd_bus_message_append(call, "i", number);
  Answer(manager.bus.get(), reload);
}

void RunningManager::ReloadChannel(int number) { Reload("ReloadChannel", number); }
void RunningManager::ReloadProtocol(int proto) { Reload("ReloadProtocol", proto); }
