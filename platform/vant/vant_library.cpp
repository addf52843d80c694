#include "platform/vant/vant_library.h"

#include <chrono>
#include <condition_variable>
#include <mutex>
#include <thread>
#include <utility>

#include "platform/vant/vant_binding.h"

namespace {

constexpr std::chrono::milliseconds kLongestWait(50);
// At the start all terminals depend on it, and nobody tries it again.
constexpr std::chrono::milliseconds kLongestFirstRegistration(1000);

/// A call of the library with everything that it reads and writes, so that a caller who has stopped waiting may go.
struct Call {
  enum class Operation { Register, Close, Read, Write, SendKeystroke } operation = Operation::Close;
  std::int16_t numbers[3] = {};  ///< node, or terminal, mode and key
  std::string path{};
  std::string record{};  ///< its size is the length
  std::int16_t count = 0;
  std::int16_t status = 0;
};

std::int16_t Run(const VantEntries& library, Call& call) {
  const auto length = static_cast<std::int16_t>(call.record.size());
  switch (call.operation) {
    case Call::Operation::Register:
      return library.registerProcess(call.numbers[0]);
    case Call::Operation::Close:
      return library.closeProcess();
    case Call::Operation::Read:
      call.count = 0;
      return library.read(call.path.c_str(), length, call.record.data(), &call.count);
    case Call::Operation::Write:
      return library.write(call.path.c_str(), length, call.record.data());
    case Call::Operation::SendKeystroke:
      return library.sendKeystroke(call.numbers[0], call.numbers[1], call.numbers[2]);
  }
  return VantStatusCode::BadConnect;
}

}  // namespace

/// The thread of the library, and one call under way on it. Kept alive by both sides: the thread may be the last one
/// that needs it.
class VantLibrary::Worker {
 public:
  explicit Worker(const VantEntries& library) : library_(library) {}

  static std::shared_ptr<Worker> Make(const VantEntries& library) {
    auto worker = std::make_shared<Worker>(library);
    std::thread([worker] { worker->Work(); }).detach();
    return worker;
  }

  /// Runs `call` and leaves its results in it; false if it has not come back, or an earlier one still has not.
  bool Do(Call& call, std::chrono::milliseconds longestWait = kLongestWait) {
    std::unique_lock lock(guard_);
    if (busy_) return false;
    std::swap(call_, call);
    busy_ = true;
    begun_.notify_one();
    if (!ended_.wait_for(lock, longestWait, [this] { return !busy_; })) return false;
    std::swap(call_, call);
    return true;
  }
  /// The library counts this process as registered, and no call is under way that could change that.
  bool Registered() {
    const std::lock_guard lock(guard_);
    return registered_ && !busy_;
  }
  void Leave() {
    const std::lock_guard lock(guard_);
    leaving_ = true;
    begun_.notify_one();
  }

 private:
  void Work() {
    std::unique_lock lock(guard_);
    for (;;) {
      begun_.wait(lock, [this] { return busy_ || leaving_; });
      if (!busy_) return;
      lock.unlock();
      const std::int16_t status = Run(library_, call_);  // nobody else touches it while `busy_`
      lock.lock();
      call_.status = status;
      const bool registers = call_.operation == Call::Operation::Register;
      if (registers && status == VantStatusCode::Success) registered_ = true;
      if (call_.operation == Call::Operation::Close) registered_ = false;
      busy_ = false;
      ended_.notify_one();
    }
  }

  const VantEntries library_;
  std::mutex guard_;
  std::condition_variable begun_, ended_;
  Call call_;
  bool busy_ = false;
  bool leaving_ = false;
  bool registered_ = false;
};

VantLibrary::VantLibrary(std::function<std::string()> programFolder, Report report)
    : programFolder_(std::move(programFolder)), report_(std::move(report)) {}

VantLibrary::~VantLibrary() {
  if (worker_) worker_->Leave();
}

void VantLibrary::Tell(const std::string& fault) {
  if (told_.insert(fault).second) report_(fault);
}

std::int16_t VantLibrary::VantRegisterProcess(std::int16_t node) {
  if (!worker_) {
    VantEntries entries;
    if (const std::string fault = BindVantLibrary(programFolder_(), entries); !fault.empty()) {
      Tell(fault);
      return VantStatusCode::BadConnect;
    }
    worker_ = Worker::Make(entries);
  }
  if (!callerRegistered_ && worker_->Registered()) {
    callerRegistered_ = true;  // a second registration would be refused for good
    return VantStatusCode::Success;
  }
  Call call{.operation = Call::Operation::Register, .numbers = {node}};
  const bool isFirst = std::exchange(firstRegistration_, false);
  if (!worker_->Do(call, isFirst ? kLongestFirstRegistration : kLongestWait)) return VantStatusCode::BadConnect;
  if (call.status == VantStatusCode::Success) callerRegistered_ = true;
  return call.status;
}

std::int16_t VantLibrary::VantCloseProcess() {
  callerRegistered_ = false;
  Call call;
  if (!worker_) return VantStatusCode::InvalidProcess;
  return worker_->Do(call) ? call.status : VantStatusCode::BadConnect;
}

std::int16_t VantLibrary::VantRead(const std::string& path, std::int16_t length, std::string& record) {
  const auto size = static_cast<std::size_t>(length);
  std::int16_t status = worker_ ? VantStatusCode::BadConnect : VantStatusCode::InvalidProcess;
  if (worker_) {
    Call call{.operation = Call::Operation::Read, .path = path, .record = std::move(record)};
    call.record.assign(size, ' ');
    if (worker_->Do(call)) {
      status = call.status;
      record = std::move(call.record);
      if (status == VantStatusCode::Success && (call.count < 0 || call.count > length)) {
        status = VantStatusCode::BadConnect;
        Tell("Terminal library: it says that it has read " + std::to_string(call.count) + " of " +
             std::to_string(length) + " characters of " + path);
      }
    }
  }
  if (status != VantStatusCode::Success) record.assign(size, ' ');
  return status;
}

std::int16_t VantLibrary::VantWrite(const std::string& path, std::string_view record) {
  if (!worker_) return VantStatusCode::InvalidProcess;
  Call call{.operation = Call::Operation::Write, .path = path, .record = std::string(record)};
  return worker_->Do(call) ? call.status : VantStatusCode::BadConnect;
}

std::int16_t VantLibrary::VantSendKeystroke(std::int16_t terminal, std::int16_t mode, std::int16_t key) {
  if (!worker_) return VantStatusCode::InvalidProcess;
  Call call{.operation = Call::Operation::SendKeystroke, .numbers = {terminal, mode, key}};
  return worker_->Do(call) ? call.status : VantStatusCode::BadConnect;
}
