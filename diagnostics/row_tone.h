#pragma once

struct Tables;

/// What a row as a whole tells of its channel.
enum class RowTone {
  Normal,    ///< the weights are the device's own, now
  Waiting,   ///< open, but no stream has come yet
  Fault,     ///< in error, silent or given up: its weights are not to be trusted
  Disabled,  ///< switched off in its setup
};

RowTone ToneOf(const Tables& tables, int ch);

/// Whether a channel counts as one of the plant's: failed ones do, though they are no longer enabled.
bool IsEnabledOrFailed(const Tables& tables, int ch);

struct ChannelCount {
  int online = 0;
  int enabled = 0;  ///< failed channels included
};

/// A channel is online if its link is open and its device is heard; one that serves a database is if its link is open.
ChannelCount CountChannels(const Tables& tables);
