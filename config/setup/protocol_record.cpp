#include "config/setup/protocol_record.h"

namespace {

using Number = ProtocolTable<std::int32_t> Tables::*;
using Truth = ProtocolTable<Boolean> Tables::*;

constexpr Number kNumbers[] = {&Tables::ProtoMaxStream,   &Tables::ProtoTerminator,   &Tables::ProtoStartChar,
                               &Tables::ProtoGrossPos,    &Tables::ProtoGrossLen,     &Tables::ProtoTarePos,
                               &Tables::ProtoTareLen,     &Tables::ProtoNetPos,       &Tables::ProtoNetLen,
                               &Tables::ProtoIdPos,       &Tables::ProtoIdLen,        &Tables::ProtoReserved,
                               &Tables::ProtoStatusCount, &Tables::ProtoCmdStartChar, &Tables::ProtoCmdTerminator};
constexpr Truth kTruths[] = {&Tables::ProtoGrossEnable, &Tables::ProtoTareEnable, &Tables::ProtoNetEnable,
                             &Tables::ProtoIdEnable, &Tables::ProtoLoaded};

std::size_t TextAt(int kind, int command) { return static_cast<std::size_t>(kind * kCommandRows + command); }

}  // namespace

ProtocolRecord::ProtocolRecord(const Tables& tables, int proto)
    : proto_(proto), status_(tables.ProtoStatusTable[proto]), fault_(tables.ProtoFault[proto]) {
  for (std::size_t at = 0; at < std::size(kNumbers); ++at) numbers_.at(at) = (tables.*kNumbers[at])[proto];
  for (std::size_t at = 0; at < std::size(kTruths); ++at) truths_.at(at) = (tables.*kTruths[at])[proto];
  for (int command = 0; command < kCommandRows; ++command) {
    commands_.at(static_cast<std::size_t>(command)) = tables.ProtoCmdEnabled[command][proto];
    for (int kind = 0; kind < 3; ++kind) texts_.at(TextAt(kind, command)) = tables.ProtoCmdText[kind][command][proto];
  }
}

void ProtocolRecord::PutInto(Tables& tables) const {
  for (std::size_t at = 0; at < std::size(kNumbers); ++at) (tables.*kNumbers[at])[proto_] = numbers_.at(at);
  for (std::size_t at = 0; at < std::size(kTruths); ++at) (tables.*kTruths[at])[proto_] = truths_.at(at);
  for (int command = 0; command < kCommandRows; ++command) {
    tables.ProtoCmdEnabled[command][proto_] = commands_.at(static_cast<std::size_t>(command));
    for (int kind = 0; kind < 3; ++kind) tables.ProtoCmdText[kind][command][proto_] = texts_.at(TextAt(kind, command));
  }
  tables.ProtoStatusTable[proto_] = status_;
  tables.ProtoFault[proto_] = fault_;
}
