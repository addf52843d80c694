#pragma once

#include <functional>
#include <string_view>

#include "platform/run_time_error.h"

struct Engine;
struct Tables;

/// Caption of the box about a critical fault.
inline constexpr std::string_view kScanErrorCaption = "Tarvex Scan System Error";

/// The one trap of the tick. Switches the lamps of `ch` and goes by the error number: database faults show a
/// caption and a log line, a port that is invalid or in use disables the channel, anything else is critical and
/// is logged, spoken and shown in a box, once while it lasts. A channel whose stream could not be taken whole shows
/// no weight. With `kNoChannel` the fault is critical and touches no row. Never raises: a log that cannot be written is
/// told to the operator.
void HandleFault(Engine& engine, int ch, const RunTimeError& fault);

/// Writes the error log's line of a fault of channel `ch`, by its kind, with `addition` behind it. Never raises.
void LogChannelFault(Engine& engine, int ch, const RunTimeError& fault, std::string_view addition = {});

/// What the trap does about a port that is not open (8012): receive and transmit lamps off, no message.
void TakeClosedPort(Tables& tables, int ch);

/// Runs `step`, the use of a port of channel `ch`. On a port that is not open the caller goes on with what
/// follows the step; any other fault passes on.
template <typename Step>
void ResumeNextOnClosedPort(Tables& tables, int ch, const Step& step) {
  try {
    step();
  } catch (const RunTimeError& fault) {
    if (fault.Number() != ErrorNumber::SerialPortNotOpen) throw;
    TakeClosedPort(tables, ch);
  }
}

/// Runs `step`; a fault of it is left aside, because the work has to go on: in closing, or when the fault that matters
/// has been told.
template <typename Step>
void GoOnAfterFault(const Step& step) {
  try {
    step();
  } catch (const RunTimeError&) {
    // see above
  }
}

/// Runs `step`, and reports a fault as critical instead of raising it; for work outside the tick, at start and
/// at the end. True if there was no fault.
bool ReportFault(Engine& engine, const std::function<void()>& step);

/// A line of the activity log, by the same rule.
void WriteActivity(Engine& engine, std::string_view text);
