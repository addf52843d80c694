#include "core/channel_state.h"

#include "core/engine.h"

bool ReadsStreams(const Tables& tables, int ch) {
  return tables.ChanConnectUsing[ch] == ConnectUsing::SerialPort && tables.ChanProtocol[ch] != 0;
}

void ForceRepaint(Tables& tables) {
  for (int item = 0; item < Item::Count; ++item) {
    for (int ch = 0; ch <= tables.MaxChannel; ++ch) tables.ChanDirty[item][ch] = True;
  }
}

void UpdateStatus(Engine& engine, int ch, std::string_view text) {
  SetCaption(engine.tables, ch, text);
  engine.mainForm.DrawItem(ch, Item::StatusCaption);
}

void SetCaption(Tables& tables, int ch, std::string_view text) {
  tables.ChanStatusText[ch] = text;
  tables.ChanDirty[Item::StatusCaption][ch] = True;
}

void ForceRepublication(Tables& tables, int ch) {
  tables.ChanPrevStatusBits[ch] = kPrevStatusSentinel;
  tables.ChanPrevGross[ch] = kPrevWeightSentinel;
  tables.ChanPrevTare[ch] = kPrevWeightSentinel;
  tables.ChanPrevNet[ch] = kPrevWeightSentinel;
}
