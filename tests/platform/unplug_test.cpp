#include <gtest/gtest.h>

#include <filesystem>
#include <optional>

#include "platform/run_time_error.h"
#include "tests/platform/plant_floor.h"

namespace {

/// A cable with a stable name: the name leads to the scale that is plugged in, if one is.
class Unplug : public testing::Test {
 protected:
  TemporaryFolder folder;
  std::optional<Scale> scale;
  PlantFloor floor{folder / "by-id"};

  void SetUp() override {
    PlugIn();
    floor.Open();
  }
  void PlugIn() {
    scale.emplace();
    std::filesystem::create_symlink(scale->Path(), floor.address);
  }
  void PullOut() {
    scale.reset();
    std::filesystem::remove(floor.address);
  }
};

}  // namespace

TEST_F(Unplug, AThousandPullsLeakNoHandle) {
  floor.ExpectTalk(*scale);
  const std::size_t before = OpenDescriptors();
  for (int pull = 0; pull < 1000; ++pull) {
    PullOut();
    floor.Pass(1);
    PlugIn();
    floor.Pass(1000);
  }
  floor.ExpectTalk(*scale);
  EXPECT_LE(OpenDescriptors(), before);
  floor.ports.Port(0).Close();
  EXPECT_LE(OpenDescriptors(), before - 1);
}
