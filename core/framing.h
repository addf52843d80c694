#pragma once

struct Tables;

/// Appends `ChanRxChunk` to `ChanRxBuffer`, keeps the last `ProtoMaxStream` characters, and cuts the stream to
/// handle into `ChanStream`: the one between the first two terminators, or up to the only one. False if the
/// buffer holds no terminator. With two terminators, or with one behind the protocol's start character, the
/// buffer is left as it is, so that the same stream may be cut again; in any other case it is emptied.
/// A stream length of 0 becomes 48 and a terminator of 0 becomes 10 in the protocol's tables.
bool CutStream(Tables& tables, int ch);
