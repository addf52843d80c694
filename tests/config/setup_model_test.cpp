#include <algorithm>

#include "config/setup/typed_text.h"
#include "tests/config/setup_plant.h"

namespace {

using enum Control;

class SetupModelTest : public testing::Test {
 protected:
  SetupModelTest() { plant.channelSetup.Open(4); }

  /// The fields of `names` whose state is not `expected`.
  std::string NotEnabled(const std::vector<std::string>& names, bool expected) {
    std::string wrong;
    for (const std::string& name : names) {
      const auto field = fields.Find(name);
      if (!field || fields.At(*field).enabled != expected) wrong += name + " ";
    }
    return wrong;
  }

  SetupPlant plant;
  SetupModel& setup = plant.setup;
  SetupFields& fields = setup.Fields();
};

TEST_F(SetupModelTest, TheConnectionSwitchesWhatItNeeds) {
  const std::vector<std::string> serial = {"lCb1(0)", "lCb1(1)", "lCb2(0)", "lCb2(1)", "cb(1)", "cb(2)", "ckXONXOFF"};
  const std::vector<std::string> sending = {"tTxDelay", "ltTxDelay(0)", "ltTxDelay(1)"};
  struct Case {
    int kind, bidirectional;
    bool terminal, port, delay, grey;
    const char *refresh, *txDelay;
  };
  const Case cases[] = {
      {1, 0, true, false, false, true, "50", "0"},  {0, 0, false, true, false, false, "50", "5"},
      {0, 1, false, true, true, false, "50", "5"},  {1, 1, true, false, false, true, "50", "5"},
      {2, 1, false, false, false, true, "50", "5"},
  };
  setup.SetText({tTxDelay}, "");
  setup.SetText({tRefresh}, "0");
  for (const Case& c : cases) {
    setup.SetValue({ckBidirectional}, c.bidirectional);
    setup.SetIndex({cb, 0}, c.kind);
    EXPECT_EQ(NotEnabled(serial, c.port), "") << c.kind;
    EXPECT_EQ(NotEnabled(sending, c.delay), "") << c.kind;
    EXPECT_EQ(NotEnabled({"ckEnableVVant"}, c.terminal), "") << c.kind;
    for (const SetupField* field : {&fields.At(tTxDelay), &fields.At(cb, 1), &fields.At(cb, 2)})
      EXPECT_EQ(field->grey, c.grey) << NameOf(*field);
    EXPECT_EQ(fields.At(tRefresh).text, c.refresh);
    EXPECT_EQ(fields.At(tTxDelay).text, c.txDelay);
  }
  setup.SetText({tRefresh}, "");
  setup.SetIndex({cb, 0}, 2);
  EXPECT_EQ(fields.At(tRefresh).text, "");
}

TEST_F(SetupModelTest, ThePacketProtocolHasNeitherFieldsNorCommands) {
  setup.SetValue({ckOPC}, 1);
  setup.SetValue({ckBidirectional}, 1);
  setup.Press(cmdCommands);
  setup.SetIndex({cb, 3}, 0);
  EXPECT_EQ(NotEnabled({"ckDDEServer", "ckOPC", "ckBidirectional", "ckPollForData", "cmdCommands", "cmdOPC"}, false),
            "");
  EXPECT_EQ(NotEnabled({"lCb4(0)", "lCb4(1)", "cb(4)", "ckInteractiveDBErrors"}, true), "");
  EXPECT_FALSE(fields.At(fDataField).visible || fields.At(fStatus).visible || fields.At(fCommand).visible);
  EXPECT_EQ(fields.At(ckOPC).value, 0);
  EXPECT_EQ(fields.At(ckBidirectional).value, 1);
  EXPECT_EQ(fields.At(fMisc).top, 1848);
  EXPECT_EQ(plant.tables.ChanProtocol[4], 0) << "at once, in memory";

  setup.SetIndex({cb, 3}, 10);
  EXPECT_EQ(fields.At(ckBidirectional).value, 0) << "it was forced";
  EXPECT_EQ(NotEnabled({"ckDDEServer", "ckOPC", "ckBidirectional"}, true), "");
  EXPECT_TRUE(fields.At(fStatus).visible && fields.At(fStatus).enabled);
  EXPECT_EQ(fields.At(fMisc).top, 6360);
  setup.SetValue({ckBidirectional}, 1);
  setup.SetIndex({cb, 3}, 11);
  EXPECT_EQ(fields.At(ckBidirectional).value, 1) << "it was chosen";
}

TEST_F(SetupModelTest, AFixedFormatCanBeEditedWithTheWordAlone) {
  const std::vector<std::string> edited = {"t(0)",      "t(9)",    "tCmd(0)", "tCmd(9)", "ckCmd(0)",
                                           "tCmdStart", "tCmdEnd", "ck(3)",   "TDBList1"};
  struct Case {
    int proto;
    Boolean unprotect;
    bool editable;
  };
  for (const Case& c : {Case{9, False, false}, Case{10, False, true}, Case{9, True, true}, Case{41, False, true}}) {
    plant.tables.UnprotectFormats = c.unprotect;
    setup.SetIndex({cb, 3}, c.proto);
    EXPECT_EQ(NotEnabled(edited, c.editable), "") << c.proto;
    EXPECT_EQ(NotEnabled({"t(10)", "tCmdName(0)", "tCmdValue(9)"}, true), "");
    EXPECT_EQ(fields.At(lWarning, 0).visible && fields.At(lWarning, 1).visible, c.editable);
    EXPECT_EQ(fields.At(TDBList1).greyText, !c.editable);
  }
}

TEST_F(SetupModelTest, OnePanelIsOpenAtATime) {
  plant.tables.ScreenWidth = 800;
  setup.SetValue({ckBidirectional}, 1);
  setup.SetValue({ckOPC}, 1);
  setup.Press(cmdCommands);
  EXPECT_EQ(fields.At(cmdCommands).text + fields.At(cmdCommands).tip, "Commands <<Hide Device Commands...");
  setup.Press(cmdOPC);
  EXPECT_TRUE(fields.At(fOPC).visible);
  EXPECT_FALSE(fields.At(fCommand).visible);
  EXPECT_EQ(fields.At(fCommand).left, -20000);
  EXPECT_EQ(fields.At(fOPC).left, 678);
  EXPECT_EQ(NotEnabled({"fDataField", "fStatus", "fMisc"}, false), "");
  EXPECT_EQ(fields.At(cmdCommands).text, "Commands >>");
  setup.Press(cmdDataMap);
  EXPECT_FALSE(fields.At(fDataMap).visible);
  setup.SetValue({ckOPC}, 0);
  EXPECT_FALSE(fields.At(fOPC).visible);
  EXPECT_EQ(NotEnabled({"fDataField", "fStatus", "fMisc"}, true), "");
  EXPECT_EQ(NotEnabled({"cmdOPC"}, false), "");
}

TEST_F(SetupModelTest, NumbersOfAProtocolAreShownAndTakenBack) {
  plant.tables.ProtoGrossPos[10] = 0;
  plant.tables.ProtoCmdTerminator[10] = 1310;
  plant.tables.ProtoCmdText[2][3][10] = "7";
  plant.Run(CfgAction::ProtocolToScreen, 10);
  EXPECT_EQ(fields.At(t, 0).text, "");
  EXPECT_EQ(fields.At(tCmdEnd).text, "1310");
  setup.SetText({t, 1}, "6");
  setup.SetText({t, 9}, "13x");
  setup.SetText({tCmd, 2}, "P~");
  setup.SetValue({ck, 0}, 1);
  EXPECT_EQ(plant.Run(CfgAction::ScreenToProtocol, 10), "");
  EXPECT_EQ(plant.tables.ProtoGrossPos[10], 0);
  EXPECT_EQ(plant.tables.ProtoGrossLen[10], 6);
  EXPECT_EQ(plant.tables.ProtoTerminator[10], 13);
  EXPECT_EQ(plant.tables.ProtoCmdText[0][2][10], "P~");
  EXPECT_EQ(plant.tables.ProtoGrossEnable[10], True);
  setup.SetText({t, 1}, "9");
  setup.SetText({t, 10}, "99999999999");
  EXPECT_NE(plant.Run(CfgAction::ScreenToProtocol, 10).find("6 Overflow: t(10) (Max Stream Length:)"),
            std::string::npos);
  EXPECT_EQ(plant.tables.ProtoGrossLen[10], 6) << "all or nothing";
}

TEST_F(SetupModelTest, FieldsTakeWhatTheFilesCanHold) {
  struct Case {
    FieldId field;
    const char *typed, *taken;
    bool refused;
  };
  const Case cases[] = {
      {{t, 0}, "1a2\n", "12", true},
      {{tDeviceDesc}, "a \"b\"\r\nc", "a bc", true},
      {{te, 0}, "12b34", "12b3", true},
      {{tRefresh}, "\xC3\xA4\xC3\xB6\xC3\xBCx", "\xC3\xA4\xC3\xB6\xC3\xBC", true},
      {{tCmd, 0}, "\x01~, %", "\x01~, %", false},
  };
  for (const Case& c : cases) {
    const TypedText typed = TakeTyped(*fields.At(c.field).row, c.typed);
    EXPECT_EQ(typed.text, c.taken);
    EXPECT_EQ(!typed.refusal.empty(), c.refused) << c.typed;
  }
  const FieldRow& number = *fields.At(t, 0).row;
  for (int key = 0; key < 128; ++key) {
    const bool taken =
        (key >= 48 && key <= 57) ||
        std::string("\x08\x09\x0d\x1b\x23\x24\x25\x26\x27\x28\x2e").find(static_cast<char>(key)) != std::string::npos;
    EXPECT_EQ(TakesKey(number, key), taken) << key;
    EXPECT_TRUE(TakesKey(*fields.At(tDeviceDesc).row, key));
  }
}

TEST_F(SetupModelTest, FocusFillsAListAndMarksACheckBox) {
  setup.SetIndex({cb, 5}, 99);
  EXPECT_EQ(fields.At(cb, 5).value, -1);
  setup.TakeFocus({cb, 5});
  EXPECT_EQ(fields.At(cb, 5).Item(), "LB");
  setup.TakeFocus({ckCmd, 9});
  EXPECT_TRUE(fields.At(sCmdRect, 9).visible);
  setup.LoseFocus({ckCmd, 9});
  EXPECT_FALSE(fields.At(sCmdRect, 9).visible);
  setup.TakeFocus({ckCmd, 10});  // of the DataMap panel, which has no marks
}

}  // namespace
