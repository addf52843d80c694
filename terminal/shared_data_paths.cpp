#include "terminal/shared_data_paths.h"

#include <string>

#include "core/tables.h"
#include "protocol/number.h"

void SetupArcNetPaths(Tables& tables, int ch) {
  const std::string terminal = "/v" + std::string(Trim(tables.ChanDeviceID[ch]));
  for (int packet = 1; packet <= 5; ++packet) {
    tables.ChanPathPacket[ch][packet] = terminal + "/ptp0" + std::to_string(packet);
  }
  tables.ChanPathCommand[ch] = terminal + "/lit01";
  tables.ChanPathDbName[ch] = terminal + "/lit02";
  tables.ChanPathLit03[ch] = terminal + "/lit03";
  tables.ChanPathBas10[ch] = terminal + "/bas10";
  tables.ChanPathVfd1[ch] = terminal + "/_vfd1";
  tables.ChanPathWt103[ch] = terminal + "/wt103";
  tables.ChanPathWt116[ch] = terminal + "/wt116";
  tables.ChanPathWt101[ch] = terminal + "/wt101";
  tables.ChanPathWs102[ch] = terminal + "/ws102";
  tables.ChanPathWt102[ch] = terminal + "/wt102";
}
