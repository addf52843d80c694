#include "app/setup_calls.h"

#include "core/engine.h"
#include "core/reload.h"
#include "platform/dbus/setup_calls.h"

SetupCalls SetupCallsOf(Engine& engine) {
  return {
      .reloadChannel = [&engine](int number) { ReloadChannel(engine, number > 0 ? number - 1 : kNoChannel); },
      .reloadProtocol = [&engine](int proto) { ReloadProtocol(engine, proto); },
      .editedChannel = [&engine] { return engine.tables.EditedChannel + 1; },
      .folder = engine.tables.ProgramFolder,
  };
}
