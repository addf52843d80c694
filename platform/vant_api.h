#pragma once

#include <cstdint>
#include <string>
#include <string_view>

/// Results of the terminal library that this system itself gives. Any other value is the library's own.
namespace VantStatusCode {
inline constexpr std::int16_t Success = 0;
inline constexpr std::int16_t InvalidProcess = -2;  ///< a call without a registration
inline constexpr std::int16_t BadConnect = 1;       ///< no library, or no answer from it in time
}  // namespace VantStatusCode

/// The library that reaches the terminals on their network: named fields of shared data, and the keys of a terminal.
/// Each operation returns the library's 16-bit status, 0 on success, waits 50 ms for it at most (the first
/// registration a second), and raises nothing. A call that has not come back by then is `BadConnect`, and so is each
/// further one until it has. The two operations of the library that write to a terminal's display are used by nothing.
class VantAPI32 {
 public:
  virtual ~VantAPI32() = default;

  /// Registers this process, which has to come before any other operation. One registration at a time.
  virtual std::int16_t VantRegisterProcess(std::int16_t node) = 0;
  /// Ends the registration.
  virtual std::int16_t VantCloseProcess() = 0;
  /// Fills `record` with `length` characters of the field at `path`: its text, a NUL, and blanks. After a failure the
  /// record is all blanks.
  virtual std::int16_t VantRead(const std::string& path, std::int16_t length, std::string& record) = 0;
  /// Writes `record`, whose size is the length written.
  virtual std::int16_t VantWrite(const std::string& path, std::string_view record) = 0;
  /// Presses a key of terminal 1 to 6.
  virtual std::int16_t VantSendKeystroke(std::int16_t terminal, std::int16_t mode, std::int16_t key) = 0;
};
