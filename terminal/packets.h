#pragma once

#include <cstdint>
#include <string>

struct Tables;

inline constexpr int kPacketElements = 15;  ///< that the three fields of a packet carry
inline constexpr int kPacketFields = 3;

/// Builds field 1 to 3 of the packet that begins at `ChanPacketIndex` in `PacketFieldBuffer`: five elements of 75
/// characters, and 25 hyphens. Raises 9 if it would need an element that the table does not have.
void BuildPacketField(Tables& tables, int ch, int field);

/// What the mailbox says of a packet: "****:", the records as five digits, ":", the elements of the result as three.
std::string PacketNotice(std::int64_t records, std::int32_t elements);
