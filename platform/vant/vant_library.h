#pragma once

#include <functional>
#include <memory>
#include <set>
#include <string>

#include "platform/vant_api.h"

/// The terminal library, bound at the first registration. It is called on one thread of this adapter, because nobody
/// knows how long it waits for a terminal.
class VantLibrary : public VantAPI32 {
 public:
  using Report = std::function<void(const std::string&)>;

  /// `programFolder` is asked for when the library is bound. `report` gets what is wrong with the library, once, on the
  /// caller's thread.
  VantLibrary(std::function<std::string()> programFolder, Report report);
  VantLibrary(const VantLibrary&) = delete;
  VantLibrary& operator=(const VantLibrary&) = delete;
  /// Does not wait for a call that has not come back.
  ~VantLibrary() override;

  /// Answers success without a call if the library registered too late for its caller, or could not be closed.
  std::int16_t VantRegisterProcess(std::int16_t node) override;
  std::int16_t VantCloseProcess() override;
  std::int16_t VantRead(const std::string& path, std::int16_t length, std::string& record) override;
  std::int16_t VantWrite(const std::string& path, std::string_view record) override;
  std::int16_t VantSendKeystroke(std::int16_t terminal, std::int16_t mode, std::int16_t key) override;

 private:
  class Worker;

  void Tell(const std::string& fault);

  std::function<std::string()> programFolder_;
  Report report_;
  std::set<std::string> told_;
  bool firstRegistration_ = true;
  bool callerRegistered_ = false;   ///< what the caller was told last
  std::shared_ptr<Worker> worker_;  ///< null until the library is bound
};
