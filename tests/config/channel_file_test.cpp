#include <random>

#include "config/cfg_text.h"
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

/// A line of 34 fields of the right kinds: i number, b truth value, s text.
std::string RandomLine(std::mt19937& random) {
  constexpr std::string_view kCharacters = "aZ, #~\\\r\n\t\x80\xFF";
  CfgWriter writer;
  for (char kind : std::string_view("iiiibssissssbbbbbbbbbiiisssssssiib")) {
    if (kind == 'i') writer.Integer(static_cast<int>(random() % 7));  // in the range of every list
    if (kind == 'b') writer.Truth(AsBoolean(random() % 2 == 0));
    if (kind == 's') {
      std::string text;
      for (auto length = random() % 9; length > 0; --length) text += kCharacters[random() % kCharacters.size()];
      writer.Text(text);
    }
  }
  writer.EndLine();
  return writer.Content();
}

TEST(ChannelFileTest, AnySettingsSurviveLoadAndSaveAndTheLastOfSeveralLinesHolds) {
  std::mt19937 random(7);
  for (int round = 0; round < 200; ++round) {
    ConfigPlant plant;
    const std::string line = RandomLine(random);
    plant.File(kFile10) = RandomLine(random) + line;
    ASSERT_EQ(plant.Run(CfgAction::ReadChannelFile, 9), "") << line;
    EXPECT_EQ(plant.Run(CfgAction::WriteChannelFile, 9), "");
    ASSERT_EQ(plant.File(kFile10), line);
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

TEST(ChannelFileTest, AListIndexOutsideItsListIsRefused) {
  ConfigPlant plant;
  for (const char* protocol : {"-1", "43"}) {
    plant.File(kFile10) = protocol + std::string(kDefaultsOfChannel9).substr(1);
    EXPECT_EQ(plant.Run(CfgAction::ReadChannelFile, 9),
              "9 Subscript out of range: /plant/Tarvex-SCALE10.Cfg, line 1, field 1 (ChanProtocol): found \"" +
                  std::string(protocol) + "\", possible are 0 to 42");
  }
}

}  // namespace
