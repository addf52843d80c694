#pragma once

#include <array>
#include <cstdint>
#include <filesystem>
#include <string>

/// A plant on pseudo-terminals with a program's folder of its own: 32 scales at COM1 to COM32, all enabled, whose
/// streams are six digits of gross weight and a CR.
class PtyPlant {
 public:
  static constexpr int kScales = 32;
  static constexpr int kInjured = 0;  ///< the scale that an injury befalls: all others stand behind it

  /// What is wrong with one of the scales.
  enum class Injury {
    None,
    Faults,   ///< its format cannot format its weights: each of its streams ends a tick with a fault
    Babbles,  ///< it sends without pause and never ends a stream
  };

  /// Interval and sleep in milliseconds, as the system file has them. All channels are on the OPC server at
  /// `opcEndpoint` if there is one.
  PtyPlant(int timer1Interval, int timer1Sleep, Injury injury = Injury::None, const std::string& opcEndpoint = {});
  ~PtyPlant();
  PtyPlant(const PtyPlant&) = delete;
  PtyPlant& operator=(const PtyPlant&) = delete;

  const std::filesystem::path& Folder() const { return folder_; }
  /// Has a scale send this weight, 0 to 999999.
  void Send(int scale, int weight) const;
  /// Has each scale send so many streams a second, each with another weight, for good.
  [[noreturn]] void SendOfAll(int streamsASecond) const;
  /// When each stream was sent, by its weight: monotonic time in nanoseconds.
  using SendTimes = std::array<std::int64_t, 1'000'000>;
  static constexpr int kNumberedStreamsASecond = 20 * kScales;
  /// Has the scales from `firstScale` on send 20 streams a second each, `streams` of all scales together, whose weights
  /// are their numbers; then sends nothing, for good.
  [[noreturn]] void SendNumbered(SendTimes& sent, int streams, int firstScale = 0) const;
  /// What the injured scale does, for good: a thousand streams, or 64,000 characters a second, 16 times what the
  /// fastest line carries.
  [[noreturn]] void SendOfInjured(Injury injury) const;

 private:
  std::filesystem::path folder_;
  std::array<int, kScales> scales_{};
};
