#pragma once

#include <functional>

#include "platform/opcua/opcua_controls.h"

class Files;
struct Engine;

/// What the OPC controls ask of the system: servers come from `Tarvex-OPC.Cfg`, certificates lie in the program's
/// folder, and what becomes of a connection goes into the OPC log. `engine` is asked for when it is needed.
OpcUaControls::Hooks OpcHooksOf(std::function<Engine&()> engine, Files& files);
