#pragma once

#include <QAbstractButton>
#include <QApplication>
#include <stdexcept>

#include "core/gdi_timer.h"
#include "core/scan_engine.h"
#include "core/startup.h"
#include "tests/support/test_plant.h"
#include "tests/ui/wait_for.h"
#include "ui/dialogs.h"
#include "ui/frm_tarvex_startup.h"
#include "ui/frm_tarvex_std_setup.h"
#include "ui/frm_txm.h"
#include "ui/qt_canvas.h"

/// The plant with its real windows. The scan and the drawing are cranked by the test.
class PanelPlant {
 public:
  explicit PanelPlant(int displayWidth = 1024) {
    plant.tables.ScreenWidth = static_cast<std::int16_t>(displayWidth);
    plant.tables.StartMinimized = False;
    plant.tables.GDITimerSleep = 0;
    plant.events.onDoEvents = [] { QCoreApplication::processEvents(); };
    dialogs.Use(engine, plant.manager.Terminal());
    plant.dialogs.onDetail = [this](int element, std::string_view text) { dialogs.ShowDetail(element, text); };
    startupForm.Use(engine, [this] { panel.Unload(); });
    panel.Use(engine, dialogs);
    panel.OnSetup([this](int ch) { setup.Open(ch); });
    setupForm.Use({model, setup, [](int comNumber) { return "/dev/tty" + std::to_string(comNumber); }});
    setupForm.SetOwner(&panel);
  }

  /// From the start-up form to the panel, past all initialisation of channels.
  void Launch() {
    LoadStartupForm(engine);
    LaunchMainScreen(engine);
    tables.ChannelsInitialised = True;
    tables.GDITimerSleep = 0;
    if (!WaitFor([&] { return tables.ScreenPainted == True; })) throw std::runtime_error("the panel was not painted");
  }
  /// A channel whose device sends six digits of gross.
  void Connect(int ch) {
    plant.Connect(ch, 10);
    tables.ProtoGrossEnable[10] = True;
    tables.ProtoGrossPos[10] = 1;
    tables.ProtoGrossLen[10] = 6;
  }
  /// One tick of the scan and one of the drawing.
  void Tick(int ch, std::string_view bytes) {
    plant.ports.port[static_cast<std::size_t>(ch)].waiting += bytes;
    Timer1Tick(engine);
    GDITimerTick(engine);
    QCoreApplication::processEvents();
  }
  QAbstractButton& Button(const QString& name) const {
    auto* found = panel.findChild<QAbstractButton*>(name);
    if (found == nullptr) throw std::runtime_error("no " + name.toStdString());
    return *found;
  }

  TestPlant plant;
  Tables& tables = plant.tables;
  Dialogs dialogs;
  frmTarvexStartup startupForm;
  frmTXM panel;
  Engine engine = plant.EngineWith({.startupForm = &startupForm, .mainForm = &panel});
  SetupModel& model = plant.manager.Setup();
  frmTarvexStdSetup setupForm;
  ChannelSetup setup{engine, model, setupForm};
};
