#include "core/sentences.h"

#include <gmock/gmock.h>

#include "tests/support/test_plant.h"

namespace {

struct SentenceCase {
  Occasion occasion;
  std::string_view words;
};

constexpr SentenceCase kCases[] = {
    {Occasion::ComPortNotOpened,
     "Attention!, A Tarvex error has occured trying to initialize Channel 4's  COM port. Channel  4 will not be "
     "enabled. Please check for other channels that may be set to the same com port. Please un check the ENABLED check "
     "box in the upper right hand area of Channel 4's setup screen to eliminate this message. Please contact Orvane "
     "Technical Support if you need additional assistance."},
    {Occasion::ArcNetNotRegistered,
     "Attention!, A Tarvex error has occured trying to initialize Channel 4's  ARC NET port. The ARC NET interface may "
     "not be functional.Try exiting and then restarting Tarvex. If this error still occurs, try rebooting the "
     "computer. Please contact Orvane Technical Support if you need additional assistance."},
    {Occasion::ArcNetNotRead,
     "Attention!, A Tarvex error has repeatedly occured trying to read Channel 4's  ARC NET Vantor. This Channel "
     "device "
     "I D is not responding  properly, and is probably slowing down the entire system. Channel 4 is being disabled. "
     "Please verify the Vantor's ArcNet settings and retry the connection. Please contact Orvane Technical Support if "
     "you need additional assistance."},
    {Occasion::ComPortInvalid,
     "Attention!, A Tarvex error has occured on Channel 4,  You have selected an invalid COM port. I am restoring "
     "default com port settings and disabling channel 4now.Please contact Orvane Technical Support if you need "
     "additional assistance."},
    {Occasion::ComPortInUse,
     "Attention!, A Tarvex error has occured on Channel 4,  You have selected a COM port that is already is use. I am "
     "restoring default com port settings and disabling channel 4now.Please contact Orvane Technical Support if you "
     "need additional assistance."},
    {Occasion::SqlError,
     "Attention!, A Tarvex error has occured on Channel 4,  This is a S Q L Error, D colon,  Backslash, a.db is "
     "locked.  Please correct this problem now in your vant basic program,  or contact Orvane Technical Support for "
     "additional assistance."},
    {Occasion::DatabaseError,
     "Attention!, A Tarvex error has occured on Channel 4,  This is a Database Error, D colon,  Backslash, a.db is "
     "locked.  Please correct this problem now, or contact Orvane Technical Support for additional assistance."},
    {Occasion::CriticalError,
     "Attention!, A Critical Tarvex error has occured, possibly on Channel 4,  The error is number, 3045 , D:\\a.db is "
     "locked , Please contact Orvane Technical Support with this information."},
};

TEST(SentencesTest, EachOccasionIsSpokenInItsOwnWordsWithTheNumberPeopleKnowTheChannelBy) {
  TestPlant plant;
  plant.tables.SpeechEnabled = True;
  for (const SentenceCase& c : kCases) {
    plant.notice.spoken.clear();
    Say(plant.tables, plant.notice, c.occasion, 3, RunTimeError(3045, "D:\\a.db is locked"));
    EXPECT_THAT(plant.notice.spoken, testing::ElementsAre(std::string(c.words)));
  }
}

}  // namespace
