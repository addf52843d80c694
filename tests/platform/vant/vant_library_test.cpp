#include "platform/vant/vant_library.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <chrono>
#include <thread>

#include "tests/platform/machine.h"

namespace {

using testing::ElementsAre;
using testing::HasSubstr;

constexpr std::int16_t kTooManyProcesses = -1;

class VantLibraryTest : public testing::Test {
 protected:
  ~VantLibraryTest() override {
    library.VantCloseProcess();  // all tests have the same library
    unsetenv("TARVEX_VANTAPI");
  }
  void Use(const char* library) { setenv("TARVEX_VANTAPI", library, 1); }

  TemporaryFolder folder;
  std::vector<std::string> reports;
  VantLibrary library{[this] { return folder.Path(); }, [this](const std::string& fault) { reports.push_back(fault); }};
  std::string record;
};

TEST_F(VantLibraryTest, EveryOperationReachesTheLibraryWithItsArguments) {
  Use(FAKE_VANT);
  EXPECT_EQ(library.VantRead("/x", 12, record), VantStatusCode::InvalidProcess);
  EXPECT_EQ(library.VantRegisterProcess(125), 0);
  EXPECT_EQ(library.VantRead("/x", 12, record), 0);
  EXPECT_EQ(record, std::string(12, 'w'));
  EXPECT_EQ(library.VantRead("/refused", 40, record), 65);
  EXPECT_EQ(record, std::string(40, ' '));
  EXPECT_EQ(library.VantWrite("/x", "one"), 0);
  EXPECT_EQ(library.VantWrite("/x", "other"), 69);
  EXPECT_EQ(library.VantSendKeystroke(3, 1, 7), 317);
  EXPECT_EQ(library.VantCloseProcess(), 0);
  EXPECT_TRUE(reports.empty());
}

TEST_F(VantLibraryTest, ALibraryThatIsMissingOrIncompleteIsToldOnce) {
  for (const char* file : {"/no/such/libvantapi32.so", PARTIAL_VANT, FAKE_VANT}) {
    Use(file);
    const bool good = std::string_view(file) == FAKE_VANT;
    EXPECT_EQ(library.VantRegisterProcess(125), good ? VantStatusCode::Success : VantStatusCode::BadConnect);
    EXPECT_EQ(library.VantRegisterProcess(125), good ? kTooManyProcesses : VantStatusCode::BadConnect);
  }
  EXPECT_THAT(reports, ElementsAre(HasSubstr("/no/such/libvantapi32.so"), HasSubstr("lacks an entry")));
}

TEST_F(VantLibraryTest, AWrongCountIsAFailure) {
  Use(FAKE_VANT);
  library.VantRegisterProcess(125);
  for (int time = 0; time < 2; ++time) {
    for (const char* path : {"/count", "/count2"})
      EXPECT_EQ(library.VantRead(path, 12, record), VantStatusCode::BadConnect);
  }
  EXPECT_EQ(record, std::string(12, ' '));
  EXPECT_THAT(reports, ElementsAre(HasSubstr("13 of 12 characters of /count"), HasSubstr("/count2")));
}

TEST_F(VantLibraryTest, ACallThatTakesTooLongFailsForItsCallerAndAllOthersUntilItHasReturned) {
  Use(FAKE_VANT);
  library.VantRegisterProcess(125);
  const auto start = std::chrono::steady_clock::now();
  for (int time = 0; time < 50; ++time) EXPECT_EQ(library.VantRead("/slow", 12, record), VantStatusCode::BadConnect);
  EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::milliseconds(250)) << "only the first one waits";
  std::int16_t status = VantStatusCode::BadConnect;
  while (status != VantStatusCode::Success && std::chrono::steady_clock::now() - start < std::chrono::seconds(10)) {
    status = library.VantRead("/x", 40, record);
    std::this_thread::yield();
  }
  EXPECT_EQ(record, std::string(40, 'w')) << "the late answer is dropped";
}

TEST_F(VantLibraryTest, ARegistrationThatIsLateOrCannotBeClosedCountsAtTheNextTry) {
  Use(FAKE_VANT);
  constexpr std::int16_t kSlow = 126;
  EXPECT_EQ(library.VantRegisterProcess(kSlow), VantStatusCode::Success) << "the first one has time";
  EXPECT_EQ(library.VantCloseProcess(), VantStatusCode::Success);
  EXPECT_EQ(library.VantRegisterProcess(kSlow), VantStatusCode::BadConnect);
  std::this_thread::sleep_for(std::chrono::milliseconds(150));
  EXPECT_EQ(library.VantRegisterProcess(kSlow), VantStatusCode::Success);
  EXPECT_EQ(library.VantRegisterProcess(125), kTooManyProcesses);
  library.VantRead("/slow", 12, record);
  EXPECT_EQ(library.VantCloseProcess(), VantStatusCode::BadConnect);
  std::this_thread::sleep_for(std::chrono::milliseconds(400));
  EXPECT_EQ(library.VantRegisterProcess(125), VantStatusCode::Success);
  library.VantRead("/slow", 12, record);  // the end does not wait for it
}

}  // namespace
