#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <utility>

#include "platform/run_time_error.h"

/// Truth values of the tables: -1 and 0 in 16 bits.
using Boolean = std::int16_t;
inline constexpr Boolean True = -1;
inline constexpr Boolean False = 0;

constexpr Boolean AsBoolean(bool value) { return value ? True : False; }

[[noreturn]] void RaiseSubscriptOutOfRange();

/// A table of fixed size whose index is checked: outside 0 to N - 1 it raises "Subscript out of range" (9).
template <typename Element, std::size_t N>
class Table {
 public:
  Element& operator[](int index) { return elements_[Checked(index)]; }
  const Element& operator[](int index) const { return elements_[Checked(index)]; }

  static constexpr int Size() { return static_cast<int>(N); }
  auto begin() { return elements_.begin(); }
  auto end() { return elements_.end(); }
  auto begin() const { return elements_.begin(); }
  auto end() const { return elements_.end(); }
  void Fill(const Element& value) { elements_.fill(value); }

 private:
  static std::size_t Checked(int index) {
    if (index < 0 || static_cast<std::size_t>(index) >= N) RaiseSubscriptOutOfRange();
    return static_cast<std::size_t>(index);
  }

  std::array<Element, N> elements_{};
};
