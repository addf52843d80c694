#include "tests/config/config_plant.h"

namespace {

constexpr const char* kName = "TarvexSysSetup.Cfg";

TEST(SystemFileTest, AMissingOrEmptyFileIsWrittenWithTheDefaultsAndLogged) {
  ConfigPlant plant;
  plant.tables.Timer1Interval = 99;
  EXPECT_EQ(plant.Run(CfgAction::ReadSystemFile), "");
  EXPECT_EQ(plant.File(kName), "25,2,15,0,25,1,#TRUE#,#TRUE#\r\n");
  EXPECT_EQ(plant.tables.Timer1Interval, 25);
  EXPECT_EQ(plant.LogText(LogType::Error), "2026-01-02 03:04:05 @ /plant/TarvexSysSetup.Cfg File Not Found.\r\n");
}

TEST(SystemFileTest, ADamagedFileLeavesTheSettingsAndItselfAsTheyWere) {
  ConfigPlant plant;
  const std::string damaged = plant.File(kName) = "1,2,15,0,25,1,#TRUE#,#TR";
  EXPECT_EQ(plant.Run(CfgAction::ReadSystemFile),
            "13 Type mismatch: /plant/TarvexSysSetup.Cfg, line 1, field 8 (StartMinimized): found \"#TR\"");
  EXPECT_EQ(plant.tables.Timer1Interval, 25);
  EXPECT_EQ(plant.File(kName), damaged);
}

}  // namespace
