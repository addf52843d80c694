#include "config/cfg_line.h"

#include <utility>

#include "core/fixed_tables.h"

namespace {

template <typename... Cases>
struct Overloaded : Cases... {
  using Cases::operator()...;
};
template <typename... Cases>
Overloaded(Cases...) -> Overloaded<Cases...>;

std::string Expand(std::string_view standard, const Tables& tables, int number) {
  std::string text;
  for (std::size_t at = 0; at < standard.size(); ++at) {
    if (standard.substr(at).starts_with("%F")) {
      text += tables.ProgramFolder;
      ++at;
    } else if (standard.substr(at).starts_with("%N")) {
      text += DisplayNumber(number);
      ++at;
    } else {
      text += standard[at];
    }
  }
  return text;
}

}  // namespace

void CfgRecord::Read(CfgReader& reader, CfgLine line, Tables& tables, int number, int row) {
  for (const CfgFieldRow& field : line) {
    const CfgCell cell = field.cell(tables, number, row);
    held_.push_back(
        {cell, std::visit(Overloaded{
                              [&](std::int32_t*) -> Value { return reader.Integer(field.name, field.low, field.high); },
                              [&](Boolean*) -> Value { return reader.Truth(field.name); },
                              [&](std::string*) -> Value { return reader.Text(field.name); },
                          },
                          cell)});
  }
}

void CfgRecord::Commit() {
  for (Held& held : held_) {
    std::visit([&](auto* target) { *target = std::move(std::get<std::decay_t<decltype(*target)>>(held.value)); },
               held.cell);
  }
}

void WriteCfgLine(CfgWriter& writer, CfgLine line, Tables& tables, int number, int row) {
  for (const CfgFieldRow& field : line) {
    std::visit(Overloaded{
                   [&](const std::int32_t* value) { writer.Integer(*value); },
                   [&](const Boolean* value) { writer.Truth(*value); },
                   [&](const std::string* value) { writer.Text(*value); },
               },
               field.cell(tables, number, row));
  }
  writer.EndLine();
}

void RestoreCfgDefaults(CfgLine line, Tables& tables, int number) {
  for (const CfgFieldRow& field : line) {
    const CfgCell cell = field.cell(tables, number, 0);
    std::visit(Overloaded{
                   [](std::monostate) {},
                   [&](std::int32_t value) { *std::get<std::int32_t*>(cell) = value; },
                   [&](bool value) { *std::get<Boolean*>(cell) = AsBoolean(value); },
                   [&](std::string_view text) { *std::get<std::string*>(cell) = Expand(text, tables, number); },
               },
               field.standard);
  }
}
