#pragma once

#include <coroutine>
#include <exception>
#include <utility>

/// Work that may have to wait for something outside the tick: a coroutine that is resumed by whoever holds it. A fault
/// of the work is raised by the `Resume` in which it happens. Letting go of the task gives the work up where it stands.
class Task {
 public:
  struct promise_type {
    std::exception_ptr fault;

    Task get_return_object() { return Task(std::coroutine_handle<promise_type>::from_promise(*this)); }
    std::suspend_always initial_suspend() noexcept { return {}; }
    std::suspend_always final_suspend() noexcept { return {}; }
    void return_void() {}
    void unhandled_exception() { fault = std::current_exception(); }
  };

  Task() = default;
  Task(Task&& other) noexcept : work_(std::exchange(other.work_, nullptr)) {}
  Task& operator=(Task&& other) noexcept {
    std::swap(work_, other.work_);
    return *this;
  }
  ~Task() {
    if (work_) work_.destroy();
  }

  bool IsUnderWay() const { return work_ && !work_.done(); }
  /// Goes on to the next point where the work has to wait, or to its end.
  void Resume() {
    work_.resume();
    if (work_.done() && work_.promise().fault) std::rethrow_exception(work_.promise().fault);
  }

 private:
  explicit Task(std::coroutine_handle<promise_type> work) : work_(work) {}

  std::coroutine_handle<promise_type> work_;
};
