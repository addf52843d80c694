#include "diagnostics/row_tone.h"

#include "core/tables.h"

namespace {

struct CaptionTone {
  std::string_view caption;
  RowTone tone;
};

constexpr CaptionTone kCaptionTones[] = {
    {Caption::Initializing, RowTone::Waiting},    {Caption::ReInitializing, RowTone::Waiting},
    {Caption::Ready, RowTone::Waiting},           {Caption::InitializationError, RowTone::Fault},
    {Caption::Offline, RowTone::Fault},           {Caption::NetworkIdError, RowTone::Fault},
    {Caption::DeviceDisabled, RowTone::Disabled}, {Caption::SettingsLost, RowTone::Fault},
};

bool IsOnline(const Tables& tables, int ch) {
  if (tables.ChanConnected[ch] == False) return false;
  if (tables.ChanProtocol[ch] == 0) return true;
  return (tables.ChanStatusBits[ch] & StatusBit::Offline) == 0 && ToneOf(tables, ch) != RowTone::Waiting;
}

}  // namespace

RowTone ToneOf(const Tables& tables, int ch) {
  if (tables.ChanIndicator[Item::Error][ch] == True) return RowTone::Fault;
  for (const CaptionTone& row : kCaptionTones) {
    if (tables.ChanStatusText[ch] == row.caption) return row.tone;
  }
  return tables.ChanStatusText[ch].empty() ? RowTone::Disabled : RowTone::Normal;
}

bool IsEnabledOrFailed(const Tables& tables, int ch) {
  return tables.ChanEnabled[ch] == True || ToneOf(tables, ch) != RowTone::Disabled;
}

ChannelCount CountChannels(const Tables& tables) {
  ChannelCount count;
  for (int ch = 0; ch <= tables.MaxChannel; ++ch) {
    if (IsEnabledOrFailed(tables, ch)) ++count.enabled;
    if (IsOnline(tables, ch)) ++count.online;
  }
  return count;
}
