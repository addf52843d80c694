#include "tests/config/config_plant.h"

namespace {

constexpr const char* kFile10 = "Tarvex-SCALE10.Cfg";
constexpr const char* kDefaultsOfChannel9 =
    R"(2,0,0,33,#FALSE#,"","SCALE 10",0,"","","OPC.DELTAV.1","/plant/WtData-SCALE10.Txt",)"
    R"(#FALSE#,#FALSE#,#FALSE#,#FALSE#,#FALSE#,#TRUE#,#FALSE#,#FALSE#,#FALSE#,30,12,50,)"
    R"("SCALE_10/GROSS.CV","SCALE_10/TARE.CV","SCALE_10/NET.CV","SCALE_10/SCALESTAT.CV","SCALE_10/CMD.CV",)"
    R"("SCALE_10/CMDPARM.CV","SCALE_10/CMDSTAT.CV",0,0,#FALSE#)"
    "\r\n";

TEST(ChannelFileTest, AMissingOrEmptyFileIsWrittenWithTheChannelsOwnDefaults) {
  ConfigPlant plant;
  plant.tables.ChanTimeout[9] = 7;
  EXPECT_EQ(plant.Run(CfgAction::ReadChannelFile, 9), "");
  EXPECT_EQ(plant.File(kFile10), kDefaultsOfChannel9);
  EXPECT_EQ(plant.tables.ChanTimeout[9], 50);
  EXPECT_EQ(plant.LogText(LogType::Error), "") << "it is no fault and is not logged";
}

TEST(ChannelFileTest, AFileThatIsGoneWhenAnEnabledChannelIsReadAgainIsToldUntilItHasContent) {
  ConfigPlant plant;
  const std::string enabled = std::string(kDefaultsOfChannel9)
                                  .replace(std::string(kDefaultsOfChannel9).find("Txt\",") + 5, 15, "#FALSE#,#TRUE#");
  plant.File(kFile10) = enabled;
  ASSERT_EQ(plant.Run(CfgAction::ReadChannelFile, 9), "");
  plant.File(kFile10).clear();
  ASSERT_EQ(plant.Run(CfgAction::ReadChannelFile, 9), "");
  EXPECT_EQ(plant.tables.ChanEnabled[9], False);
  EXPECT_EQ(plant.tables.ChanSettingsLost[9], True);
  EXPECT_EQ(plant.LogText(LogType::Error),
            "2026-01-02 03:04:05 @ /plant/Tarvex-SCALE10.Cfg was empty or gone: channel 10, which was enabled, has its "
            "default settings and is disabled now\r\n");
  plant.File(kFile10) = enabled;
  ASSERT_EQ(plant.Run(CfgAction::ReadChannelFile, 9), "");
  EXPECT_EQ(plant.tables.ChanSettingsLost[9], False);
  EXPECT_EQ(plant.tables.ChanEnabled[9], True);
}

TEST(ChannelFileTest, EverySettingSurvivesLoadAndSaveAndTheLastOfSeveralLinesHolds) {
  const std::string line = R"(1,2,3,4,#TRUE#,"a, b","c  ",5,"#d","~e","f\g",")"
                           "\x80\xFF\r\n"
                           R"(",#TRUE#,#FALSE#,#TRUE#,#TRUE#,#FALSE#,)"
                           R"(#FALSE#,#TRUE#,#FALSE#,#TRUE#,6,7,8,"h","i","j","k","l","m","n",9,6,#TRUE#)"
                           "\r\n";
  ConfigPlant plant;
  plant.File(kFile10) = kDefaultsOfChannel9 + line;
  ASSERT_EQ(plant.Run(CfgAction::ReadChannelFile, 9), "");
  EXPECT_EQ(plant.Run(CfgAction::WriteChannelFile, 9), "");
  EXPECT_EQ(plant.File(kFile10), line);
}

TEST(ChannelFileTest, ATextThatIsTooLongIsCutBetweenTwoCharactersAndLogged) {
  for (const auto& [text, kept] : {std::pair{std::string(1024, 'x'), 1024U},
                                   {std::string(1025, 'x'), 1024U},
                                   {std::string(1023, 'x') + "\xC3\xA4", 1023U}}) {
    ConfigPlant plant;
    plant.File(kFile10) = kDefaultsOfChannel9;
    plant.File(kFile10).replace(plant.File(kFile10).find("SCALE 10"), 8, text);
    ASSERT_EQ(plant.Run(CfgAction::ReadChannelFile, 9), "");
    EXPECT_EQ(plant.tables.ChanDeviceDesc[9], text.substr(0, kept));
    EXPECT_EQ(plant.tables.ChanTimeout[9], 50);
    const bool told =
        plant.LogText(LogType::Error).find("SCALE10.Cfg, line 1, field 7 (ChanDeviceDesc)") != std::string::npos;
    EXPECT_EQ(told, text.size() > 1024);
  }
}

TEST(ChannelFileTest, AFileCutAnywhereRaisesAndChangesNothing) {
  const std::string whole = kDefaultsOfChannel9;
  for (std::size_t size = 1; size < whole.size() - 2; ++size) {
    ConfigPlant plant;
    plant.tables.ChanProtocol[9] = 5;
    plant.File(kFile10) = whole.substr(0, size);
    const std::string fault = plant.Run(CfgAction::ReadChannelFile, 9);
    ASSERT_TRUE(fault.starts_with("62 ") || fault.starts_with("13 ")) << size << fault;
    ASSERT_NE(fault.find("/plant/Tarvex-SCALE10.Cfg, line 1, field "), std::string::npos) << fault;
    ASSERT_EQ(plant.tables.ChanProtocol[9], 5);
  }
}

}  // namespace
