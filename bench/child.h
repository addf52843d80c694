#pragma once

#include <sys/types.h>

#include <cstdint>
#include <functional>

/// Monotonic time in nanoseconds.
std::int64_t Now();

/// What `part` is of `whole`, in percent.
double Percent(std::int64_t part, std::int64_t whole);

/// A process that does `work`, ended with this object.
class Child {
 public:
  explicit Child(const std::function<void()>& work);
  ~Child();
  Child(const Child&) = delete;
  Child& operator=(const Child&) = delete;

  /// Processor time used so far, in nanoseconds.
  std::int64_t CpuTime() const;
  /// Memory that is in use by it, in kilobytes.
  long ResidentSize() const;

 private:
  pid_t pid_;
};

/// Resident memory of the process `/proc/PROCESS`, in kilobytes.
long ResidentSizeOf(const char* process);
