#include <gtest/gtest.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>

#include "platform/posix/program_folder.h"
#include "tools/setup/line_frames.h"
#include "tools/setup/verbs.h"

namespace {

std::string Content(const std::string& path) {
  std::ifstream file(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(file), {}};
}

/// A program's folder with the shipped formats, and the verbs on it.
class SetupToolTest : public testing::Test {
 protected:
  SetupToolTest() { PrepareProgramFolder(folder, FORMATS_FOLDER); }
  ~SetupToolTest() override { std::filesystem::remove_all(folder); }

  /// Standard output; or what was raised, with "fault: " in front.
  std::string Run(int (*verb)(const std::string&, const Words&), const Words& words) {
    testing::internal::CaptureStdout();
    std::string fault;
    try {
      verb(folder, words);
    } catch (const RunTimeError& raised) {
      fault = "fault: " + raised.Description();
    } catch (const std::exception& raised) {
      fault = std::string("fault: ") + raised.what();
    }
    return testing::internal::GetCapturedStdout() + fault;
  }
  static bool Holds(const std::string& text, const std::string& part) { return text.find(part) != std::string::npos; }

  std::string folder = (std::filesystem::temp_directory_path() / ("tarvex-setup-" + std::to_string(getpid()))).string();
};

TEST_F(SetupToolTest, SettingsAreChangedAllOrNone) {
  const std::string file = folder + "/Tarvex-SCALE3.Cfg";
  EXPECT_EQ(Run(Set, {"3", "Device Desc.=Silo", "cb(3)=10", "pc port=COM9"}), "Saved.\n");
  EXPECT_TRUE(Content(file).starts_with("10,0,8,33,#FALSE#,\"\",\"Silo\"")) << Content(file);
  const std::string before = Content(file);
  struct Case {
    Words words;
    const char* told;
  };
  const Case cases[] = {
      {{"3", "devicedesc=Tank", "PC Port=COM99"}, "PC Port: \"COM99\" is not in its list"},
      {{"3", "devicedesc=a\"b"}, "double quotes"},
      {{"3", "Database Driver=1"}, "is not used with the other settings"},
      {{"3", "Nonsense=1"}, "There is no setting \"Nonsense\""},
      {{"3", "t(0)=5"}, "is a setting of a protocol"},
      {{"3", "Timeout=99999999999"}, "above the largest number"},
      {{"33", "devicedesc=x"}, "there are 1 to 32"},
      {{"protocol", "2", "t(10)=99"}, "is a fixed format"},
      {{"protocol", "10", "row(1)=Motion|1 / MOTION|2|1|8|X"}, "rows are 0 to 0"},
      {{"protocol", "10", "row(0)=Motion|1 / MOTION|2"}, "takes six texts"},
      {{"protocol", "10", "row(0)=Motion|1 / MOTION|10000|1|8|X"}, "no more characters"},
      {{"3", "cmdOk=1"}, "There is no setting \"cmdOk\""},
  };
  for (const Case& c : cases) EXPECT_TRUE(Holds(Run(Set, c.words), c.told)) << c.told << ": " << Run(Set, c.words);
  EXPECT_EQ(Content(file), before);

  const std::string row = "row(0)=Net Mode|2 / MODE|3b0|1b1|1|X";
  EXPECT_EQ(Run(Set, {"protocol", "10", "Gross_Wt Position=5", "t(1)=6", "ck(0)=yes", "t(9)=13", row,
                      "insert(0)=Motion|1 / MOTION|3b3|1b1|8|X"}),
            "Saved.\n");
  const std::string shown = Run(Show, {"protocol", "10"});
  EXPECT_TRUE(Holds(shown, "row(0)=Motion|1 / MOTION|3b3|1b1|8|X\n  row(1)=Net Mode|")) << shown;
  EXPECT_TRUE(Holds(Run(Show, {"3"}), "Silo"));
  EXPECT_TRUE(Holds(Run(Show, {}), "  3  disabled  COM9"));
}

TEST_F(SetupToolTest, LookingChangesNothing) {
  for (auto* verb : {Show, Check}) Run(verb, {});
  EXPECT_FALSE(std::filesystem::exists(folder + "/Tarvex-SCALE1.Cfg"));
  std::ofstream(folder + "/Tarvex-SCALE2.Cfg") << "1,2";
  EXPECT_TRUE(Holds(Run(Check, {}), "Tarvex-SCALE2.Cfg, the file: Input past end of file"));
}

TEST_F(SetupToolTest, ACaptureIsExplainedStreamByStream) {
  const std::string capture = folder + "/x.capture";
  std::ofstream(capture) << "02 2D 20 20 30 30 32 35 30 33\n30 30 30 30 30 30 0D\n";
  const std::string text = Run(Try, {"2", capture});
  EXPECT_TRUE(Holds(text, "Gross_Wt    5-10  \"002503\"  = 2.503")) << text;
  EXPECT_TRUE(Holds(text, "* Decimal Place XXX.XXX      2b0     found 5, looks for 5"));
  EXPECT_EQ(text, Run(Try, {folder + "/Tarvex-Std-OVStdFmt.Cfg", capture})
                      .replace(0, std::string("OVCustom Format 1").size(), "OV Standard Continuous Format"));
  EXPECT_TRUE(Holds(Run(Try, {"1x", capture}), "is no protocol"));
}

TEST(LineFramesTest, FramesEndWhereDevicesEndThem) {
  LineFrames cutter;
  EXPECT_EQ(cutter.Take("12\r\n34\r", 0), (std::vector<std::string>{"12\r\n"}));
  EXPECT_EQ(cutter.Take("56\x03"
                        "78",
                        10),
            (std::vector<std::string>{"34\r", "56\x03"}));
  EXPECT_EQ(cutter.Take("", 200), (std::vector<std::string>{"78"}));
  EXPECT_GT(CleannessOf({"\x02 12.5\r", "\x02 12.6\r", "\x02 12.7\r"}).Score(), 0.9);
  EXPECT_LT(CleannessOf({"\xE0\x80\xFF", "\xE0", "\x80\x80\x9F\x10\x10"}).Score(), 0.2);
}

TEST_F(SetupToolTest, AnOpcServerIsTrustedByAPartOfItsNameThatMeansItAlone) {
  const std::string certificates = folder + "/Tarvex-OPC";
  EXPECT_TRUE(Holds(Run(Opc, {}), "Refused servers: none\nTrusted servers: none"));
  std::filesystem::create_directories(certificates + "/rejected");
  for (const char* name : {"Plant[aa11].pem", "Plant[aa22].pem"})
    std::ofstream(certificates + "/rejected/" + name) << 1;
  EXPECT_TRUE(Holds(Run(Opc, {"trust", "aa"}), "fault: several"));
  EXPECT_TRUE(Holds(Run(Opc, {"trust", "bb"}), "fault: no certificate"));
  EXPECT_EQ(Run(Opc, {"trust", "aa2"}), "Trusted from now on: Plant[aa22]\n");
  EXPECT_TRUE(Holds(Run(Opc, {}), "Refused servers:\n  Plant[aa11]\nTrusted servers:\n  Plant[aa22]\n"));
  Run(Opc, {"refuse", "aa2"});
  EXPECT_TRUE(std::filesystem::exists(certificates + "/rejected/Plant[aa22].pem"));
  EXPECT_TRUE(Holds(Run(Opc, {"trust"}), "fault: opc takes"));

  Run(Set, {"2", "Server Name=plant", "OPC Interface=yes"});
  std::ofstream(folder + "/Tarvex-OPC.Cfg") << "plant,opc.tcp://x:1,None,None,user,no such file\n";
  EXPECT_TRUE(Holds(Run(Check, {}), "Tarvex-SCALE2.Cfg, the file: Password file missing or empty")) << Run(Check, {});
}

}  // namespace
