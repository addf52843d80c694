#include "config/cfg_line.h"

#include <algorithm>
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

/// A byte that continues a character of several bytes.
bool IsInsideCharacter(char byte) { return (static_cast<unsigned char>(byte) & 0xC0) == 0x80; }

}  // namespace

void CfgRecord::Read(CfgReader& reader, CfgLine line, Tables& tables, int number, int row) {
  for (const CfgFieldRow& field : line) {
    const CfgCell cell = field.cell(tables, number, row);
    held_.push_back({cell, std::visit(Overloaded{
                                          [&](std::int32_t* target) -> Value { return Number(reader, field, target); },
                                          [&](Boolean*) -> Value { return reader.Truth(field.name); },
                                          [&](std::string*) -> Value { return Text(reader, field); },
                                      },
                                      cell)});
  }
}

std::int32_t CfgRecord::Number(CfgReader& reader, const CfgFieldRow& field, const std::int32_t* cell) {
  try {
    const std::int32_t number = reader.Integer(field.name);
    if (number >= field.low && number <= field.high) return number;
    const std::string found = "Subscript out of range: " + reader.PlaceOfField(field.name) + ": found \"" +
                              std::to_string(number) + "\", possible are " + std::to_string(field.low) + " to " +
                              std::to_string(field.high);
    if (field.outOfRange == OutOfRange::Replaced) refused_.push_back({cell, number});
    return OutsideRange(field, found, number);
  } catch (const RunTimeError& fault) {
    if (fault.Number() != ErrorNumber::Overflow || field.outOfRange == OutOfRange::Kept) throw;
    return OutsideRange(field, fault.Description(), 0);
  }
}

std::int32_t CfgRecord::OutsideRange(const CfgFieldRow& field, const std::string& found, std::int32_t number) {
  if (field.outOfRange == OutOfRange::Kept) {
    remarks_.push_back(found + "; it is kept, and nothing uses it");
    return number;
  }
  const auto standard = std::get<std::int32_t>(field.standard);
  remarks_.push_back(found + "; " + std::to_string(standard) + " is used");
  return standard;
}

std::string CfgRecord::Text(CfgReader& reader, const CfgFieldRow& field) {
  std::string text = reader.Text(field.name);
  if (text.size() <= longestText_) return text;
  remarks_.push_back(reader.PlaceOfField(field.name) + ": the text has " + std::to_string(text.size()) +
                     " bytes and is cut to " + std::to_string(longestText_));
  std::size_t end = longestText_;
  while (end > 0 && IsInsideCharacter(text[end])) --end;
  text.resize(end);
  return text;
}

void CfgRecord::Clear() {
  held_.clear();
  remarks_.clear();
  refused_.clear();
}

void CfgRecord::Commit() {
  for (Held& held : held_) {
    std::visit([&](auto* target) { *target = std::move(std::get<std::decay_t<decltype(*target)>>(held.value)); },
               held.cell);
  }
}

void WriteCfgLine(CfgWriter& writer, CfgLine line, Tables& tables, int number, int row,
                  std::span<const RefusedNumber> refused) {
  const auto toWrite = [&](const CfgFieldRow& field, const std::int32_t* value) {
    const auto stood = std::ranges::find(refused, value, &RefusedNumber::cell);
    const bool keeps = stood != refused.end() && *value == std::get<std::int32_t>(field.standard);
    return keeps ? stood->found : *value;
  };
  for (const CfgFieldRow& field : line) {
    std::visit(Overloaded{
                   [&](const std::int32_t* value) { writer.Integer(toWrite(field, value)); },
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
