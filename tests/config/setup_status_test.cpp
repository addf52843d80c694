#include "tests/config/setup_plant.h"

namespace {

/// The grid with `entries` rows named "0", "1", ...
class SetupStatusTest : public testing::Test {
 protected:
  void Fill(int entries) {
    StatusTable table;
    for (int row = 0; row < entries; ++row) table.SetCell(row, 0, std::to_string(row));
    grid.Show(table);
  }
  std::string Names(int from, int count) {
    std::string names;
    for (int row = from; row < from + count; ++row) names += grid.At(row, 0).value_or("-") + ",";
    return names;
  }

  SetupFields fields;
  StatusGrid grid;
  StatusEntry entry{fields, grid};
};

TEST_F(SetupStatusTest, EntriesStandWithoutAGapAndTheLastRowIsNeverFree) {
  Fill(3);
  EXPECT_EQ(grid.FirstEmptyEntry(), 3);
  grid.SelectRow(50);
  EXPECT_EQ(grid.Bookmark(), 3);
  EXPECT_FALSE(grid.TakesKey(KeyCode::Down));
  grid.SelectRow(2);
  EXPECT_TRUE(grid.TakesKey(KeyCode::Down));
  for (int key : {13, 33, 34, 35, 36, 39}) EXPECT_FALSE(grid.TakesKey(key)) << key;
  EXPECT_TRUE(grid.TakesKey(KeyCode::Up));

  Fill(99);
  EXPECT_EQ(grid.FirstEmptyEntry(), -1);
  grid.SelectRow(99);
  EXPECT_EQ(grid.Bookmark(), 99);
  EXPECT_TRUE(grid.TakesKey(KeyCode::Down));
  Fill(98);
  EXPECT_EQ(grid.FirstEmptyEntry(), 98);
}

TEST_F(SetupStatusTest, TheSelectionIsScrolledIntoSight) {
  Fill(60);
  grid.SetVisibleRows(10);
  struct Case {
    int row, firstRow, rowInSight;
  };
  for (const Case& c : {Case{0, 0, 0}, Case{9, 0, 9}, Case{10, 2, 8}, Case{59, 51, 8}}) {
    grid.SelectRow(c.row);
    EXPECT_EQ(grid.FirstRow(), c.firstRow) << c.row;
    EXPECT_EQ(grid.Row(), c.rowInSight) << c.row;
  }
}

TEST_F(SetupStatusTest, RowsMoveOnInsertAndDelete) {
  const StatusRowTexts texts = {"new", "(WEIGHT)", "1", "2", "3", "X"};
  Fill(3);
  grid.Set(99, 0, "lost");
  grid.InsertEntry(0, texts);
  EXPECT_EQ(Names(0, 6), "new,0,1,2,,-,") << "row 4 is the empty row that was row 3";
  EXPECT_EQ(grid.At(0, 5), "X");
  EXPECT_EQ(grid.At(99, 0), std::nullopt);
  grid.DeleteEntry(1);
  EXPECT_EQ(Names(0, 5), "new,1,2,,-,");
  EXPECT_EQ(grid.At(99, 0), "");

  Fill(1);
  grid.DeleteEntry(0);
  grid.SelectRow(5);
  EXPECT_EQ(grid.Bookmark(), 0);

  Fill(99);
  grid.DeleteEntry(97);
  EXPECT_EQ(Names(96, 4), "96,98,-,,");
}

TEST_F(SetupStatusTest, AnEntryIsTakenFromItsRowAndPutBack) {
  const StatusRowTexts row = {"Motion", "1 / MOTION", "2b1", "1b1", "2", ""};
  Fill(0);
  grid.ReplaceEntry(0, row);
  grid.SetCol(3);
  grid.SelectRow(0);
  EXPECT_EQ(entry.Open(), (FieldId{Control::te, 1}));
  EXPECT_TRUE(entry.IsOpen());
  EXPECT_TRUE(fields.At(Control::cmdDelete).enabled);
  EXPECT_EQ(fields.At(Control::cke).value, 0);
  for (Control kept :
       {Control::fConnection, Control::cmdOk, Control::cmdCancel, Control::TDBList1, Control::cmdCommands})
    EXPECT_FALSE(fields.At(kept).enabled) << NameOf(kept);
  fields.At(Control::te, 2).text.clear();  // the mask may be empty
  entry.EnableEntryExitTest();
  EXPECT_TRUE(fields.At(Control::cmdInsert).enabled);
  fields.At(Control::ckBidirectional).value = 1;
  entry.cmdReplace();
  EXPECT_EQ(grid.At(0, 2), "2b1");
  EXPECT_EQ(grid.At(0, 4), "");
  EXPECT_FALSE(entry.IsOpen());
  EXPECT_TRUE(fields.At(Control::cmdOk).enabled);
  EXPECT_FALSE(fields.At(Control::cmdCommands).enabled) << "until Bi-Directional is clicked";
  EXPECT_EQ(fields.At(Control::cbStatus).value, -1);
}

TEST_F(SetupStatusTest, AnEntryNeedsItsFieldsAndRoomInTheTable) {
  Fill(1);
  grid.SelectRow(1);
  entry.Open();
  EXPECT_FALSE(fields.At(Control::cmdDelete).enabled);
  EXPECT_EQ(fields.At(Control::cke).value, 1) << "a new entry starts enabled";
  EXPECT_EQ(fields.At(Control::cbStatus).Item(), "LB");
  EXPECT_FALSE(fields.At(Control::cmdInsert).enabled);
  fields.At(Control::te, 0).text = "1";
  fields.At(Control::te, 1).text = "1";
  entry.EnableEntryExitTest();
  EXPECT_TRUE(fields.At(Control::cmdInsert).enabled && fields.At(Control::cmdReplace).enabled);
  entry.cmdInsert();
  EXPECT_EQ(Names(0, 3), "0,LB,,");

  Fill(99);  // a name that the list does not have shows the first item
  grid.SelectRow(3);
  entry.Open();
  fields.At(Control::te, 0).text = fields.At(Control::te, 1).text = "1";
  entry.EnableEntryExitTest();
  EXPECT_FALSE(fields.At(Control::cmdInsert).enabled) << "full: it stays as it was";
  EXPECT_TRUE(fields.At(Control::cmdReplace).enabled);
  entry.cmdReplace();
  EXPECT_EQ(Names(3, 2), "LB,4,");
}

}  // namespace
