#pragma once

class OperatorNotice;
class RunTimeError;
struct Tables;

/// Occasions on which the operator is spoken to.
enum class Occasion {
  ComPortNotOpened,     ///< a channel's serial port at its initialisation
  ArcNetNotRegistered,  ///< a channel's terminal link at its initialisation
  ArcNetNotRead,        ///< the read of a terminal
  ComPortInvalid,       ///< 8002
  ComPortInUse,         ///< 8005
  SqlError,             ///< database expression error
  DatabaseError,        ///< database engine and remote data errors
  CriticalError,
};

/// Speaks the sentence for an occasion on channel `ch` (0 to 31) if `SpeechEnabled`. It stands beside the log line
/// or the message box, never in their place. An occasion that tells an error needs the form with `fault`.
void Say(const Tables& tables, OperatorNotice& notice, Occasion occasion, int ch);
void Say(const Tables& tables, OperatorNotice& notice, Occasion occasion, int ch, const RunTimeError& fault);
