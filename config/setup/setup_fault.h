#pragma once

#include "core/log.h"
#include "core/tables.h"
#include "platform/operator_notice.h"
#include "platform/run_time_error.h"

/// Caption of the boxes of the setup and of its port trial.
inline constexpr std::string_view kSetupErrorCaption = "Tarvex Setup Error";

enum class SetupFault {
  GoOn,     ///< 8012, a port that is not open: only spoken of
  Refused,  ///< 8002 or 8005: the port is not to be had
  Critical  ///< any other
};

SetupFault KindOfSetupFault(const RunTimeError& fault);

/// Tells a fault that came up while channel `ch` was set up, by log, speech and box. Raises what the log raises.
void TellSetupFault(const Tables& tables, Log& log, OperatorNotice& notice, int ch, const RunTimeError& fault);
