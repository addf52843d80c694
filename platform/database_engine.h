#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

/// What a query has found. A dynaset in the sense that its count is known, and its records are read in order.
struct Recordset {
  std::int64_t recordCount = 0;  ///< of the whole result
  std::size_t fieldCount = 0;    ///< of a record
  std::vector<std::string>
      values;  ///< record after record, field after field: whole records, as many as were asked for
};

/// The work of one channel: one database at a time, one operation at a time. An operation runs on a thread of the
/// session; whoever begins it looks for its end.
class DatabaseSession {
 public:
  virtual ~DatabaseSession() = default;

  /// Makes a database file of that name. Fault 3204 if there is one.
  virtual void BeginCreateDatabase(const std::string& path) = 0;
  /// Opens a database and closes what an earlier failure has left open. Fault 3024 if there is none: it is never made.
  /// A `readOnly` one refuses whatever would change it, by fault 3051.
  virtual void BeginOpenDatabase(const std::string& path, bool readOnly) = 0;
  /// Runs a statement that has no result. Fault 3065 for a query.
  virtual void BeginExecute(const std::string& statement) = 0;
  /// Runs a query to its end. Of its values at least `values` are kept, if there are so many, in whole records.
  /// A statement without a result is run too, and finds no records.
  virtual void BeginOpenRecordset(const std::string& statement, std::size_t values) = 0;
  virtual void BeginCloseRecordset() = 0;
  virtual void BeginCloseDatabase() = 0;

  /// Whether the operation has ended; waits for it as long as that, in milliseconds.
  virtual bool IsDone(int milliseconds) = 0;
  /// Takes the end of an operation that is done. Raises its fault: the number is one of the three ranges of database
  /// faults, the description the engine's own sentence.
  virtual Recordset End() = 0;
  /// Stops what is under way as soon as that can be done, and closes what is open, without waiting for either. The next
  /// operation begins when that is over.
  virtual void Abandon() = 0;
};

/// The database engine behind the channels of protocol 0.
class DatabaseEngine {
 public:
  virtual ~DatabaseEngine() = default;
  /// The session of a channel, made at its first use.
  virtual DatabaseSession& Session(int ch) = 0;
  /// Frees read locks; called behind each command.
  virtual void Idle() = 0;
  /// Ends all sessions: what is under way is interrupted and waited for. References to sessions end with it.
  virtual void Close() = 0;
};
