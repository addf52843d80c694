#pragma once

#include <exception>
#include <string>
#include <utility>

/// The one exception type of the system. It is raised where a fault is found and caught in one place, the
/// tick's trap, which sorts it by `Number()`.
class RunTimeError : public std::exception {
 public:
  /// `description` says what a person needs: the file, the field, the device.
  RunTimeError(int number, std::string description) : number_(number), description_(std::move(description)) {}

  int Number() const noexcept { return number_; }
  const std::string& Description() const noexcept { return description_; }
  const char* what() const noexcept override { return description_.c_str(); }

 private:
  int number_;
  std::string description_;
};

/// Error numbers, the classic ones where there is one.
namespace ErrorNumber {
inline constexpr int InvalidCall = 5;
inline constexpr int Overflow = 6;
inline constexpr int OutOfMemory = 7;
inline constexpr int SubscriptOutOfRange = 9;
inline constexpr int TypeMismatch = 13;
inline constexpr int Internal = 51;
inline constexpr int FileNotFound = 53;
inline constexpr int DeviceIo = 57;
inline constexpr int DiskFull = 61;
inline constexpr int InputPastEnd = 62;
inline constexpr int PermissionDenied = 70;
inline constexpr int PathFileAccess = 75;
inline constexpr int SerialPortInvalid = 8002;
inline constexpr int SerialPortInUse = 8005;
inline constexpr int SerialPortNotOpen = 8012;
}  // namespace ErrorNumber
