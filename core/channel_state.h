#pragma once

#include <string_view>

struct Engine;
struct Tables;

/// True for a channel whose weights come as streams over a serial port: not from a terminal, and no database channel.
bool ReadsStreams(const Tables& tables, int ch);

/// Flags every cell of channels 0 to `MaxChannel` for repainting.
void ForceRepaint(Tables& tables);

/// Sets the status caption and repaints it at once.
void UpdateStatus(Engine& engine, int ch, std::string_view text);

/// Sets the status caption and flags it; the screen repaints it in its own time.
void SetCaption(Tables& tables, int ch, std::string_view text);

/// Puts the sentinels in place of the values last published, so that the next stream publishes all of them.
void ForceRepublication(Tables& tables, int ch);
