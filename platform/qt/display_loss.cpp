#include "platform/qt/display_loss.h"

#include <cstdlib>
#include <utility>

namespace {

std::function<void()>& Armed() {
  static std::function<void()> onLoss;
  return onLoss;
}

void TellOnce() {
  if (const auto onLoss = std::exchange(Armed(), nullptr)) onLoss();
}

}  // namespace

DisplayLoss::DisplayLoss(std::function<void()> onLoss) {
  Armed() = std::move(onLoss);
  [[maybe_unused]] static const int registered =
      std::atexit(TellOnce);  // behind `Armed`, so that it runs before its end
}

DisplayLoss::~DisplayLoss() { Armed() = nullptr; }
