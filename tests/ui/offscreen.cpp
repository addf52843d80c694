#include "tests/ui/offscreen.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <memory>

namespace {

class OffscreenScreen : public testing::Environment {
 public:
  void SetUp() override {
    setenv("QT_QPA_PLATFORM", "offscreen", 0);
    setenv("QT_LOGGING_RULES", "qt.qpa.*=false", 0);
    application_ = std::make_unique<QApplication>(argc_, argv_);
    QApplication::setQuitOnLastWindowClosed(false);
  }
  void TearDown() override { application_.reset(); }
  QApplication& Application() { return *application_; }

 private:
  int argc_ = 1;
  char name_[5] = "test";
  char* argv_[2] = {name_, nullptr};
  std::unique_ptr<QApplication> application_;
};

OffscreenScreen* const screen = [] {
  auto* environment = new OffscreenScreen;
  testing::AddGlobalTestEnvironment(environment);  // takes it over
  return environment;
}();

}  // namespace

QApplication& OffscreenApplication() { return screen->Application(); }
