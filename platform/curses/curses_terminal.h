#pragma once

#include <memory>

#include "platform/text_terminal.h"

/// The terminal at standard input and output, through ncurses. It is raw while this object lives: no key stops
/// the output or suspends the program, which would stop the scan.
class CursesTerminal : public TextTerminal {
 public:
  /// True if standard input and output are a terminal.
  static bool IsThere();

  /// Takes the terminal over. Raises a `std::runtime_error` if it is of an unknown kind.
  CursesTerminal();
  ~CursesTerminal() override;

  int Rows() const override;
  int Columns() const override;
  bool TakeSize() override;
  void Clear() override;
  void Put(int row, int column, std::string_view text, int width, Look look) override;
  void Redraw() override;
  void Flush() override;
  int ReadKey() override;

 private:
  class Impl;
  std::unique_ptr<Impl> impl_;
};
