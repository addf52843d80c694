/// Links the logic and the standard library, nothing else: decodes one stream through the whole room of protocols.
#include <cstdlib>
#include <memory>

#include "core/fixed_tables.h"
#include "core/tables.h"
#include "protocol/status.h"

int main() {
  const auto tables = std::make_unique<Tables>();
  FillFixedTables(*tables);
  int column = 0;
  for (const char* cell : {"Motion", "1 / MOTION", "1", "0", "50", "X"}) {
    tables->ProtoStatusTable[10].SetCell(0, column++, cell);
  }
  ParseStatusData(*tables, "2", 0, 10);
  return tables->ChanStatusBits[0] == StatusBit::Motion ? EXIT_SUCCESS : EXIT_FAILURE;
}
