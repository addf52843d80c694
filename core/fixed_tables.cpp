#include "core/fixed_tables.h"

#include <string_view>

#include "core/tables.h"

namespace {

constexpr int kLastFixedProtocol = 9;
constexpr int kCustomProtocols = 32;

struct FixedProtocol {
  std::string_view name;
  std::string_view file;
};

constexpr FixedProtocol kFixedProtocols[kLastFixedProtocol + 1] = {
    {"VantODBC", "\\Tarvex-Std-OVVANTODBC.Cfg"},
    {"OV Short Form Continuous Format", "\\Tarvex-Std-OVShortFmt.Cfg"},
    {"OV Standard Continuous Format", "\\Tarvex-Std-OVStdFmt.Cfg"},
    {"OV HCP Host Mode", "\\Tarvex-Std-OVHCPFmt.Cfg"},
    {"OV 4430 Format", "\\Tarvex-Std-OV4430Fmt.Cfg"},
    {"OV 4410 Short Form Cont. Format", "\\Tarvex-Std-OV4410ShortFmt.Cfg"},
    {"OV 4410 Standard Cont. Format", "\\Tarvex-Std-OV4410StdFmt.Cfg"},
    {"OV QR60 ContinuousFormat", "\\Tarvex-Std-OV4420Fmt.Cfg"},  // name and file differ on purpose
    {"OV QR Single Line Format", "\\Tarvex-Std-OVQRFmt.Cfg"},
    {"OV Merlo Format", "\\Tarvex-Std-OVMerloFmt.Cfg"},
};

constexpr std::string_view kBauds[] = {"1200", "2400", "4800", "9600", "19200", "38400"};
constexpr std::string_view kFrames[] = {"N,7,1", "O,7,1", "E,7,1", "N,7,2", "O,7,2",
                                        "E,7,2", "N,8,1", "O,8,1", "E,8,1"};
constexpr std::string_view kUnits[] = {
    "LB",     "KG",          "Grams",        "MilliGrams", "MicroGrams",    "Metric Tons",  "Tons",
    "Ounces", "Troy Ounces", "Penny Weight", "Pieces",     "Custom Units1", "Custom Units2"};
constexpr std::string_view kDecimalMasks[] = {"", "#####0", "####0.0", "###0.00", "##0.000", "#0.0000", "0.00000"};

}  // namespace

void FillFixedTables(Tables& tables) {
  int setting = 0;
  for (std::string_view baud : kBauds) {
    for (std::string_view frame : kFrames) {
      tables.PortSettingsTable[setting++] = std::string(baud) + "," + std::string(frame);
    }
  }
  int index = 0;
  for (std::string_view unit : kUnits) tables.UnitsTable[index++] = unit;
  index = 0;
  for (std::string_view mask : kDecimalMasks) tables.DecimalMaskTable[index++] = mask;

  tables.LastFixedProtocol = kLastFixedProtocol;
  for (int proto = 0; proto <= kLastFixedProtocol; ++proto) tables.ProtoFileName[proto] = kFixedProtocols[proto].file;
  for (int custom = 1; custom <= kCustomProtocols; ++custom) {
    tables.ProtoFileName[kLastFixedProtocol + custom] = "\\Tarvex-Std-CustFmt" + std::to_string(custom) + ".Cfg";
  }
}

std::string ProtocolName(int proto) {
  if (proto < 0 || proto > kLastFixedProtocol + kCustomProtocols) return {};
  if (proto <= kLastFixedProtocol) return std::string(kFixedProtocols[proto].name);
  return "OVCustom Format " + std::to_string(proto - kLastFixedProtocol);
}

std::string PathInProgramFolder(const Tables& tables, const std::string& name) {
  return tables.ProgramFolder + "/" + name.substr(name.empty() ? 0 : 1);
}

std::string DisplayNumber(int ch) { return std::to_string(ch + 1); }
