#include "core/startup.h"

#include "core/engine.h"
#include "core/error_trap.h"
#include "core/fixed_tables.h"
#include "core/initialisation.h"
#include "core/version.h"
#include "protocol/number.h"

namespace {

constexpr int kAllChannels = 31;
constexpr int kEightChannels = 7;
constexpr int kNarrowestDisplay = 800;
constexpr std::string_view kStartupProblemCaption = " Tarvex Manager Startup Problem...";

struct KnownSystem {
  int platform;
  int major;  ///< -1: any
  int minor;  ///< -1: any
  std::string_view name;
};

constexpr KnownSystem kKnownSystems[] = {
    {1, -1, 0, "95"}, {1, -1, 10, "98"}, {2, 3, -1, "NT3.51"}, {2, 4, -1, "NT4"}, {2, 5, -1, "2000"},
};

/// The words may stand anywhere in the command line, in any case, joined to anything.
void ReadCommandLineWords(Tables& tables, std::string_view commandLine) {
  const std::string line = UpperCase(commandLine);
  const auto has = [&](std::string_view word) { return line.find(word) != std::string::npos; };
  tables.NoMinimize = AsBoolean(has("NOMINIMIZE"));
  tables.SpeechEnabled = AsBoolean(has("SPEECH"));
  tables.UnprotectFormats = AsBoolean(has("UNPROTECT"));
  tables.DebugMode = AsBoolean(has("DEBUG"));
  tables.GdiEnabled = AsBoolean(!has("NOGDI"));
  for (int ch = 0; ch <= tables.MaxChannel; ++ch) tables.ChanAuditLog[ch] = AsBoolean(has("LOG"));
}

bool Refuse(Engine& engine, std::string_view logText, std::string_view boxText) {
  ReportFault(engine, [&] { engine.log.WriteLog(LogType::Error, logText); });
  engine.notice.MessageBoxUntilRead(kStartupProblemCaption, boxText);
  return false;
}

/// A damaged system file leaves the settings as they were, at first the defaults. The file is read several times on
/// the way up: each fault is told once, until the file has been found good.
void ReadSystemFile(Engine& engine) {
  ReportFault(engine, [&] {
    std::string& told = engine.tables.SystemFileFault;
    try {
      engine.configuration.CfgProc(CfgAction::ReadSystemFile, 0);
      told.clear();
    } catch (const RunTimeError& fault) {
      if (told == fault.Description()) return;
      told = fault.Description();
      throw;
    }
  });
}

}  // namespace

std::string GetOsName(const OsVersion& version) {
  if (version.platform != 1 && version.platform != 2) return "Failed";
  for (const KnownSystem& known : kKnownSystems) {
    if (known.platform != version.platform) continue;
    if (known.major >= 0 && known.major != version.major) continue;
    if (known.minor >= 0 && known.minor != version.minor) continue;
    return std::string(known.name);
  }
  return {};
}

std::string RevisionText() {
  return "Rev: " + std::to_string(kVersionMajor) + "." + std::to_string(kVersionMinor) + "." +
         std::to_string(kVersionRevision);
}

bool Main(Engine& engine, std::string_view commandLine) {
  Tables& tables = engine.tables;
  tables.OsName = GetOsName(engine.system.GetVersionEx());
  tables.MaxChannel = tables.OsName == "2000" || tables.OsName == "NT4" ? kAllChannels : kEightChannels;
  ReadCommandLineWords(tables, commandLine);
  if (engine.system.PreviousInstance()) {
    return Refuse(engine, "Tried To Start Tarvex Manager While Already Running",
                  "A Copy Of Tarvex Manager Is Already Running.\r\n\r\n"
                  "Please Switch To Copy Of Tarvex Manager Already Running...    \r\n\r\n"
                  "Contact Orvane For Additional Help...");
  }
  tables.FirstScanPending = True;
  tables.ScreenHeight = static_cast<std::int16_t>(engine.system.GetSystemMetrics(1));
  tables.ScreenWidth = static_cast<std::int16_t>(engine.system.GetSystemMetrics(0));
  if (tables.ScreenWidth < kNarrowestDisplay) {
    return Refuse(engine, "Tried To Start Tarvex Manager In Less Than 800 x 600 Mode",
                  "Tarvex MUST Run In At Least 800 x 600 Mode.\r\n\r\n"
                  "Change Your Screen Settings To 1024 x 768, 256-Color,\r\n\r\n"
                  "Or Contact Orvane For Additional Help...");
  }
  if (tables.ScreenWidth == 1024) tables.ScreenMode = 1024768;
  if (tables.ScreenWidth == 800) tables.ScreenMode = 800600;
  FillFixedTables(tables);
  engine.publisher.CreateTopics();
  return true;
}

void LoadStartupForm(Engine& engine) {
  Tables& tables = engine.tables;
  ReadSystemFile(engine);
  engine.startupForm.SetRevision(RevisionText());
  engine.startupForm.ShowLogo(tables.ScreenWidth);
  engine.startupForm.Show();
  engine.startupForm.ShowMenu(tables.ScreenWidth);
  if (tables.StartMinimized == True && tables.FirstScanPending == True) {
    engine.startupForm.EnableContinue(false);
    LaunchMainScreen(engine);
  }
}

void LaunchMainScreen(Engine& engine) {
  engine.startupForm.BusyPointer(true);
  engine.mainForm.BusyPointer(true);
  engine.startupForm.Hide();
  engine.tables.Stopped = False;
  engine.tables.InterfacePending = True;
  RequestFirstInitialisation(engine.tables);
  ReadSystemFile(engine);
  ReportFault(engine, [&] { engine.configuration.ReadDatabaseRights(); });
  engine.mainForm.Show();
}

void LoadMainForm(Engine& engine) {
  engine.mainForm.BusyPointer(true);
  engine.publisher.BindDevices();
  engine.mainForm.ApplyLayout(engine.tables.ScreenWidth);
  if (engine.tables.Stopped == True) return;  // stopped as soon as the window was seen
  engine.tables.InterfacePending = True;
  RequestFirstInitialisation(engine.tables);
  ReadSystemFile(engine);
  InitializeInterface(engine);
  engine.mainForm.BusyPointer(false);
}

void ActivateMainForm(Engine& engine) {
  if (engine.tables.InterfacePending == False) return;
  engine.tables.InterfacePending = False;
  InitializeInterface(engine);
}

void InitializeInterface(Engine& engine) {
  Tables& tables = engine.tables;
  const bool debug = tables.DebugMode == True;
  engine.mainForm.ShowDebugLabel(debug);
  engine.events.Timer1().SetInterval(tables.Timer1Interval);
  engine.events.Timer1().SetEnabled(true);
  engine.events.TxTimer().SetInterval(tables.TxTimerInterval);
  engine.events.TxTimer().SetEnabled(true);
  engine.events.GDITimer().SetInterval(tables.GDITimerInterval);
  engine.events.GDITimer().SetEnabled(true);
  engine.mainForm.SetRevision(RevisionText());
  engine.terminal.OpenWorkspaces();
  WriteActivity(engine, debug ? "Tarvex Manager Initialized In Debug Mode" : "Tarvex Manager Initialized");
  tables.Minimized = False;
}
