#include "publish/dde_topics.h"

#include <gtest/gtest.h>

namespace {

class RecordingWatcher : public DdeItemWatcher {
 public:
  std::string seen;
  void ItemsChanged(int form, unsigned items) override {
    seen += std::to_string(form) + ":" + std::to_string(items) + " ";
  }
  void LinksUpdated(int form) override { seen += "all of " + std::to_string(form) + " "; }
};

TEST(DdeTopicsTest, AnUpdateWritesAllSevenItemsAndTellsOfThoseThatChanged) {
  Tables tables;
  DdeTopics topics;
  RecordingWatcher watcher;
  topics.SetWatcher(&watcher);
  topics.Clear();
  tables.ChanDdeItems[2][0] = 12.50;
  tables.ChanDdeItems[2][2] = -1e-7;
  tables.ChanDdeItems[2][3] = std::int16_t{16};
  topics.SetItemText(2, 4, "3");  // poked by a client
  watcher.seen.clear();
  topics.UpdateDDELinks(tables, 2);
  std::string texts;
  for (int item = 0; item < 7; ++item) texts += topics.Request(2, item) + "|";
  EXPECT_EQ(texts, "12.5||-1E-07|16||||");
  EXPECT_EQ(watcher.seen, "2:29 all of 2 ");
}

}  // namespace
