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

TEST(SystemFileTest, NumbersThatWouldStopThePlantAreNamedInOneFaultAndTheRestOfTheFileHolds) {
  ConfigPlant plant;
  const std::string place = "Subscript out of range: /plant/TarvexSysSetup.Cfg, line 1, field ";
  plant.File(kName) = "0,1000,60001,-1,60000,1001,#FALSE#,#TRUE#\r\n";
  EXPECT_EQ(plant.Run(CfgAction::ReadSystemFile),
            "9 " + place + "1 (Timer1Interval): found \"0\", possible are 1 to 60000; 25 is used; " + place +
                "3 (TxTimerInterval): found \"60001\", possible are 1 to 60000; 15 is used; " + place +
                "4 (TxTimerSleep): found \"-1\", possible are 0 to 1000; 0 is used; " + place +
                "6 (GDITimerSleep): found \"1001\", possible are 0 to 1000; 1 is used");
  const Tables& t = plant.tables;
  EXPECT_EQ(t.Timer1Interval, 25);
  EXPECT_EQ(t.Timer1Sleep, 1000);
  EXPECT_EQ(t.GDITimerInterval, 60000);
  EXPECT_EQ(t.CmdStatInterlock, False);

  plant.tables.TxTimerInterval = 20;
  EXPECT_EQ(plant.Run(CfgAction::WriteSystemFile), "");
  EXPECT_EQ(plant.File(kName), "0,1000,20,-1,60000,1001,#FALSE#,#TRUE#\r\n") << "what nobody chose anew stands";
}

}  // namespace
