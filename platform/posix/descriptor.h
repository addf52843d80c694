#pragma once

#include <unistd.h>

#include <utility>

/// An open descriptor of the operating system, closed when it goes out of scope.
class Descriptor {
 public:
  Descriptor() = default;
  /// Takes ownership of `handle`; a negative one means none.
  explicit Descriptor(int handle) : handle_(handle) {}
  Descriptor(Descriptor&& other) noexcept : handle_(std::exchange(other.handle_, -1)) {}
  Descriptor& operator=(Descriptor&& other) noexcept {
    if (this != &other) {
      Close();
      handle_ = std::exchange(other.handle_, -1);
    }
    return *this;
  }
  ~Descriptor() { Close(); }

  /// -1 if none is held.
  int Get() const { return handle_; }
  explicit operator bool() const { return handle_ >= 0; }
  void Close() {
    if (handle_ >= 0) ::close(std::exchange(handle_, -1));
  }

 private:
  int handle_ = -1;
};
