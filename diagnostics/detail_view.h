#pragma once

#include <string>
#include <string_view>

#include "core/tables.h"

/// Windows about one channel.
enum class DetailWindow { None, Device, Sql, VirtualTerminal };

/// Blocks in which `frmDetail` groups its fields.
enum class DetailGroup { Weights, Command, Reading, Status, Device };

/// A field of `frmDetail`: its caption and the element of the label array `Ld` that holds its value.
struct DetailField {
  std::string_view caption;
  int element;
  DetailGroup group;
};

inline constexpr int kDetailElements = 23;
inline constexpr int kDetailDescription = 21;
inline constexpr int kDetailRaw = 22;

/// All captions in their order. Element 7 has none. Most elements are written by nobody and stay blank.
inline constexpr DetailField kDetailFields[] = {
    {"GROSS:", 0, DetailGroup::Weights},       {"TARE:", 1, DetailGroup::Weights},
    {"NET:", 2, DetailGroup::Weights},         {"SCALESTAT:", 3, DetailGroup::Command},
    {"CMD:", 4, DetailGroup::Command},         {"CMDPARM:", 5, DetailGroup::Command},
    {"CMDSTAT:", 6, DetailGroup::Command},     {"MOTION:", 8, DetailGroup::Reading},
    {"ERROR:", 9, DetailGroup::Reading},       {"MODE:", 10, DetailGroup::Reading},
    {"UNITS:", 11, DetailGroup::Reading},      {"STATUS1:", 12, DetailGroup::Status},
    {"STATUS2:", 13, DetailGroup::Status},     {"STATUS3:", 14, DetailGroup::Status},
    {"STATUS4:", 15, DetailGroup::Status},     {"STATUS5:", 16, DetailGroup::Status},
    {"STATUS6:", 17, DetailGroup::Status},     {"STATUS7:", 18, DetailGroup::Status},
    {"STATUS8:", 19, DetailGroup::Status},     {"STATUS9:", 20, DetailGroup::Status},
    {"Device Desc:", 21, DetailGroup::Device}, {"RAW:", 22, DetailGroup::Device},
};

/// What `cmdDetail` opens and what the device detail shows, without the window.
class DetailView {
 public:
  explicit DetailView(Tables& tables) : tables_(tables) {}

  /// `cmdDetail(ch)`: tells which window is to be shown and makes the tables ready for it. A device detail starts
  /// with blank fields, which the next stream fills even on a steady scale.
  DetailWindow Open(int ch);
  /// `cmdClose` of any of the windows.
  void Close();

  /// A live value has come for an element, 0 to 22; raises 9 outside.
  void Show(int element, std::string_view text);
  const std::string& Ld(int element) const { return texts_[element]; }
  /// The caption of the raw stream is seen once a raw stream has come, which happens in debug mode only.
  bool RawVisible() const { return rawVisible_; }

 private:
  Tables& tables_;
  Table<std::string, kDetailElements> texts_;
  bool rawVisible_ = false;
};
