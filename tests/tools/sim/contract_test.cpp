#include <fstream>
#include <sstream>

#include "core/configuration.h"
#include "protocol/number.h"
#include "tests/config/config_plant.h"
#include "tools/sim/frame.h"

using namespace sim;

namespace {

constexpr int kChannel = 3;

struct Form {
  FrameForm form;
  int proto;
  std::string path;
};

const Form kForms[] = {
    {FrameForm::Short, 1, TARVEX_FORMATS "/Tarvex-Std-OVShortFmt.Cfg"},
    {FrameForm::Standard, 2, TARVEX_FORMATS "/Tarvex-Std-OVStdFmt.Cfg"},
    {FrameForm::Ascii, 10, TARVEX_SIM_FOLDER "/Tarvex-Std-CustFmt1.Cfg"},
};

/// The system with a channel on the format file of this form.
class Receiver : public ConfigPlant {
 public:
  explicit Receiver(const Form& form) {
    std::ifstream file(form.path, std::ios::binary);
    std::ostringstream content;
    content << file.rdbuf();
    File(form.path.substr(form.path.rfind('/') + 1)) = content.str();
    EXPECT_EQ(Run(CfgAction::ReadFormatFile, form.proto), "");
    Connect(kChannel, form.proto);
  }
};

double Shown(std::int64_t counts, int decimals) {
  return std::stod(std::to_string(counts) + "e" + std::to_string(-decimals));
}

TEST(SimulatorContractTest, TheSystemShowsWhatStandsOnTheDisplayOfTheScale) {
  for (const Form& form : kForms) {
    for (int decimals = -2; decimals <= 5; ++decimals) {
      Receiver receiver(form);
      const Tables& t = receiver.tables;
      const std::int64_t largest = LargestCounts(form.form, decimals);
      for (const std::int64_t weight : {std::int64_t{0}, std::int64_t{7}, std::int64_t{-1250}, largest, -largest}) {
        if (weight < 0 && decimals == 5) continue;  // sent as out of range
        for (const std::int64_t tare : {0, 400}) {
          Reading reading;
          reading.indicated = weight;
          reading.tare = tare;
          reading.decimals = decimals;
          reading.net = tare != 0;
          reading.motion = weight == 7;
          reading.kilograms = tare != 0;
          receiver.Tick(kChannel, EncodeFrame(form.form, reading, false));
          SCOPED_TRACE(form.path + ", decimals " + std::to_string(decimals) + ", weight " + std::to_string(weight) +
                       ", tare " + std::to_string(tare));
          ASSERT_EQ(t.ChanStatusText[kChannel], "Online...");
          ASSERT_DOUBLE_EQ(NumericValue(reading.net ? t.ChanNet[kChannel] : t.ChanGross[kChannel]),
                           Shown(weight, decimals));
          if (reading.net && form.form == FrameForm::Standard) {
            ASSERT_DOUBLE_EQ(NumericValue(t.ChanTare[kChannel]), Shown(tare, decimals));
            ASSERT_NEAR(NumericValue(t.ChanGross[kChannel]), Shown(weight + tare, decimals), 1e-9);
          }
          ASSERT_EQ(t.ChanStatusBits[kChannel],
                    (reading.motion ? 2 : 0) + (reading.net ? 4 : 0) + (reading.kilograms ? 0 : 8));
        }
      }
    }
  }
}

TEST(SimulatorContractTest, AWeightThatIsOutOfRangeOrDoesNotFitIsNeverShown) {
  for (const Form& form : kForms) {
    for (int decimals = -2; decimals <= 5; ++decimals) {
      Receiver receiver(form);
      Reading good;
      good.indicated = 12;
      good.decimals = decimals;
      Reading marked = good, tooLarge = good;
      marked.outOfRange = true;
      tooLarge.indicated = LargestCounts(form.form, decimals) + 1;
      for (const Reading& reading : {marked, tooLarge}) {
        receiver.Tick(kChannel, EncodeFrame(form.form, good, false));
        ASSERT_EQ(receiver.tables.ChanStatusText[kChannel], "Online...");
        receiver.tables.ChanRxBuffer[kChannel].clear();
        receiver.Tick(kChannel, EncodeFrame(form.form, reading, false));
        EXPECT_EQ(receiver.tables.ChanStatusText[kChannel], "OUT OF RANGE") << form.path << decimals;
        EXPECT_EQ(receiver.tables.ChanGross[kChannel], "0");
      }
    }
  }
}

}  // namespace
