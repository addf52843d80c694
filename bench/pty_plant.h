#pragma once

#include <array>
#include <filesystem>
#include <string>

/// A plant on pseudo-terminals with a program's folder of its own: 32 scales at COM1 to COM32, all enabled, whose
/// streams are six digits of gross weight and a CR.
class PtyPlant {
 public:
  static constexpr int kScales = 32;

  /// Milliseconds, as the system file has them.
  PtyPlant(int timer1Interval, int timer1Sleep);
  ~PtyPlant();
  PtyPlant(const PtyPlant&) = delete;
  PtyPlant& operator=(const PtyPlant&) = delete;

  const std::filesystem::path& Folder() const { return folder_; }
  /// Has a scale send this weight, 0 to 999999.
  void Send(int scale, int weight) const;

 private:
  std::filesystem::path folder_;
  std::array<int, kScales> scales_{};
};
