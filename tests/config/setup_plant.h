#pragma once

#include <string>

#include "config/setup/channel_setup.h"
#include "tests/config/config_plant.h"

/// A plant with the setup screen of one of its channels, and no window before it.
class SetupPlant : public ConfigPlant {
 public:
  class Form : public SetupForm {
   public:
    bool shown = false;
    void Show() override { shown = true; }
    void Hide() override { shown = false; }
    void BusyPointer(bool) override {}
  };

  SetupPlant() {
    tables.ChannelsInitialised = True;
    for (int ch = 0; ch <= tables.MaxChannel; ++ch) Run(CfgAction::ReadChannelFile, ch);
  }

  SetupField& At(Control control, int element = 0) { return setup.Fields().At(control, element); }
  bool Enabled(Control control, int element = 0) { return At(control, element).enabled; }
  /// All boxes so far, one a line; forgets them.
  std::string TakeBoxes() {
    std::string lines;
    for (const auto& box : notice.boxes) lines += box.caption + ": " + box.text + "\n";
    notice.boxes.clear();
    return lines;
  }

  Form form;
  SetupModel& setup = manager.Setup();
  ChannelSetup channelSetup{engine, setup, form};
};
