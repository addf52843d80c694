#include "bench/standard_protocol.h"

#include <cstdio>

void SetUpStandardProtocol(TestPlant& plant) {
  Tables& tables = plant.tables;
  tables.ProtoStartChar[kBenchProtocol] = 2;
  tables.ProtoTerminator[kBenchProtocol] = 13;
  tables.ProtoMaxStream[kBenchProtocol] = 48;
  tables.ProtoGrossPos[kBenchProtocol] = tables.ProtoNetPos[kBenchProtocol] = 5;
  tables.ProtoGrossLen[kBenchProtocol] = tables.ProtoNetLen[kBenchProtocol] = tables.ProtoTareLen[kBenchProtocol] = 6;
  tables.ProtoTarePos[kBenchProtocol] = 11;
  tables.ProtoGrossEnable[kBenchProtocol] = tables.ProtoNetEnable[kBenchProtocol] = True;
  tables.ProtoTareEnable[kBenchProtocol] = True;

  const char* const decimals[] = {"XXXX00", "XXXXX0", "XXXXXX", "XXXXX.X", "XXXX.XX", "XXX.XXX", "XX.XXXX", "X.XXXXX"};
  int code = 0;
  for (const char* places : decimals) {
    plant.AddStatusRow(kBenchProtocol,
                       {std::string("Decimal Place ") + places, "(WEIGHT)", "2b0", "1b3", std::to_string(code++), "X"});
  }
  const char* const rows[][5] = {
      {"Gross Mode", "2 / MODE", "3b0", "1b1", "0"},
      {"Net Mode", "2 / MODE", "3b0", "1b1", "1"},
      {"Polarity Sign Positive +", "(WEIGHT)", "3b1", "1b1", "0"},
      {"Polarity Sign Negative -", "(WEIGHT)", "3b1", "1b1", "2"},
      {"Out Of Range", "0 / ERROR", "3b2", "1b1", "4"},
      {"Motion", "1 / MOTION", "3b3", "1b1", "8"},
      {"Stable", "1 / MOTION", "3b3", "1b1", "0"},
      {"LB", "3 / UNITS", "3b4", "1b1", "0"},
      {"KG", "3 / UNITS", "3b4", "1b1", "16"},
      {"Print Request", "4 / STATUS1", "4b3", "1b1", "8"},
      {"Setpoint 1 Feeding", "STATUS2", "4b0", "1b1", "1"},
      {"Setpoint 2 Feeding", "STATUS3", "4b1", "1b1", "2"},
  };
  for (const auto& row : rows) {
    plant.AddStatusRow(kBenchProtocol, {row[0], row[1], row[2], row[3], row[4], "X"});
  }
}

std::string StandardStream(int weight) {
  char text[32];
  std::snprintf(text, sizeof text, "\x02\x34\x20\x20%06d000000\r", weight % 1000000);
  return text;
}
