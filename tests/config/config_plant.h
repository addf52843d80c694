#pragma once

#include <gtest/gtest.h>

#include <string>

#include "tests/support/test_plant.h"

/// A plant whose configuration work is called action by action.
class ConfigPlant : public TestPlant {
 public:
  /// Runs one action; number and description of the fault it raises, empty if none.
  std::string Run(int action, int number = 0) {
    try {
      engine.configuration.CfgProc(action, number);
      return {};
    } catch (const RunTimeError& fault) {
      return std::to_string(fault.Number()) + " " + fault.Description();
    }
  }
  std::string& File(const std::string& name) { return files.content["/plant/" + name]; }
};
