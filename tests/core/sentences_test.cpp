#include "core/sentences.h"

#include <gmock/gmock.h>

#include <fstream>

#include "tests/support/test_plant.h"

namespace {

constexpr Occasion kOccasions[] = {Occasion::ComPortNotOpened, Occasion::ArcNetNotRegistered, Occasion::ArcNetNotRead,
                                   Occasion::ComPortInvalid,   Occasion::ComPortInUse,        Occasion::SqlError,
                                   Occasion::DatabaseError,    Occasion::CriticalError};

TEST(SentencesTest, EachOccasionIsSpokenInItsOwnWordsWithTheNumberPeopleKnowTheChannelBy) {
  TestPlant plant;
  plant.tables.SpeechEnabled = True;
  std::ifstream sentences(TEST_DATA_FOLDER "/sentences.txt");
  for (const Occasion occasion : kOccasions) {
    std::string words;
    ASSERT_TRUE(std::getline(sentences, words));
    plant.notice.spoken.clear();
    Say(plant.tables, plant.notice, occasion, 3, RunTimeError(3045, "D:\\a.db is locked"));
    EXPECT_THAT(plant.notice.spoken, testing::ElementsAre(words));
  }
}

}  // namespace
