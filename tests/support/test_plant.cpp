#include "tests/support/test_plant.h"

#include "core/fixed_tables.h"
#include "core/scan_engine.h"

TestPlant::TestPlant()
    : manager({system, events, ports, files, notice, opc, terminals, databases, startupForm, mainForm, dialogs},
              "/plant"),
      tables(manager.Store()),
      engine(manager.Parts()) {
  system.second = 1'000'000;
  tables.MaxChannel = 31;
  tables.Timer1Sleep = 0;
  tables.ChannelsInitialised = True;
  FillFixedTables(tables);
  for (int proto = 0; proto < 43; ++proto) {
    tables.ProtoStatusCount[proto] = -1;
    tables.ProtoStatusTable[proto].Clear();
  }
}

Engine TestPlant::EngineWith(const OwnParts& own) {
  const auto pick = [](auto* part, auto& otherwise) -> decltype(otherwise) {
    return part != nullptr ? *part : otherwise;
  };
  return {tables,
          system,
          events,
          ports,
          files,
          notice,
          engine.log,
          pick(own.configuration, engine.configuration),
          engine.publisher,
          pick(own.terminal, engine.terminal),
          pick(own.startupForm, engine.startupForm),
          pick(own.mainForm, engine.mainForm),
          engine.dialogs};
}

void TestPlant::Connect(int ch, int proto) {
  tables.ChanProtocol[ch] = proto;
  tables.ChanEnabled[ch] = True;
  tables.ChanConnected[ch] = True;
  tables.ChanPrevStatusBits[ch] = kPrevStatusSentinel;
  for (auto* last : {&tables.ChanPrevGross[ch], &tables.ChanPrevTare[ch], &tables.ChanPrevNet[ch]}) {
    *last = kPrevWeightSentinel;
  }
  tables.ChanLastRxTick[ch] = tables.ScanTick;
  tables.ChanStreamEndTick[ch] = tables.ScanTick;
  ports.port[static_cast<std::size_t>(ch)].open = true;
}

void TestPlant::AddStatusRow(int proto, const std::vector<std::string>& cells) {
  std::int32_t& count = tables.ProtoStatusCount[proto];
  if (count < 0) count = 0;
  int column = 0;
  for (const std::string& cell : cells) tables.ProtoStatusTable[proto].SetCell(count, column++, cell);
  ++count;
}

void TestPlant::Tick(int ch, std::string_view bytes) {
  ports.port[static_cast<std::size_t>(ch)].waiting += bytes;
  Tick();
}

void TestPlant::Tick() { Timer1Tick(engine); }

std::string TestPlant::LogText(int type) const {
  const auto file = files.content.find("/plant/" + LogFiles::FileName(type));
  return file == files.content.end() ? std::string{} : file->second;
}
