#pragma once

#include <string>
#include <string_view>

struct Engine;
struct OsVersion;

/// Name of the operating system as the channel count depends on it: "95", "98", "NT3.51", "NT4", "2000";
/// "Failed" for an unknown platform, empty for an unlisted version of a known one.
std::string GetOsName(const OsVersion& version);

/// Entry point behind the program's own: command-line words, running-copy and display tests, fixed tables, link
/// topics. False if the program must end, after the operator has been told why. The caller then creates the
/// start-up form, whose load event is `LoadStartupForm`.
bool Main(Engine& engine, std::string_view commandLine);

/// Load event of the start-up form. With `StartMinimized` the system starts at once; otherwise the form waits
/// for `CmdContinue`, which calls `LaunchMainScreen`.
void LoadStartupForm(Engine& engine);

/// From the start-up form to the main form; also starts a stopped system again.
void LaunchMainScreen(Engine& engine);

/// Load event of `frmTXM`.
void LoadMainForm(Engine& engine);

/// Activation event of `frmTXM`.
void ActivateMainForm(Engine& engine);

/// Starts the timers and announces the system in the activity log.
void InitializeInterface(Engine& engine);

/// "Rev: " and the program's version.
std::string RevisionText();
