#include "tests/config/config_plant.h"

namespace {

constexpr const char* kName = "TarvexSysSetup.Cfg";

TEST(SystemFileTest, AMissingOrEmptyFileIsWrittenWithTheDefaultsAndLogged) {
  ConfigPlant plant;
  plant.tables.Timer1Interval = 99;
  std::string log;
  for (int start = 0; start < 2; ++start) {
    EXPECT_EQ(plant.Run(CfgAction::ReadSystemFile), "");
    EXPECT_EQ(plant.File(kName), "25,2,15,0,25,1,#TRUE#,#TRUE#\r\n");
    EXPECT_EQ(plant.tables.Timer1Interval, 25);
    log += "2026-01-02 03:04:05 @ /plant/TarvexSysSetup.Cfg File Not Found.\r\n";
    EXPECT_EQ(plant.LogText(LogType::Error), log);
    plant.File(kName).clear();
  }
}

TEST(SystemFileTest, TheEightFieldsAreReadInTheirOrderAndWrittenBack) {
  ConfigPlant plant;
  plant.File(kName) = "1,2,3,4,5,6,#FALSE#,#TRUE#\r\n";
  EXPECT_EQ(plant.Run(CfgAction::ReadSystemFile), "");
  const Tables& t = plant.tables;
  EXPECT_EQ((std::vector<int>{t.Timer1Interval, t.Timer1Sleep, t.TxTimerInterval, t.TxTimerSleep, t.GDITimerInterval,
                              t.GDITimerSleep, t.CmdStatInterlock, t.StartMinimized}),
            (std::vector<int>{1, 2, 3, 4, 5, 6, False, True}));
  plant.tables.GDITimerSleep = 7;
  EXPECT_EQ(plant.Run(CfgAction::WriteSystemFile), "");
  EXPECT_EQ(plant.File(kName), "1,2,3,4,5,7,#FALSE#,#TRUE#\r\n");
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
