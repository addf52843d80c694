#pragma once

#include <string>

struct Tables;

/// What the bytes that have arrived make of the buffer.
enum class Cut {
  None,   ///< no terminator in it
  Again,  ///< a stream, but no end of one has arrived: it may have been handled before
  Fresh,  ///< a stream, and the end of one has arrived
};

/// Appends `ChanRxChunk` to `ChanRxBuffer`, keeps the last `ProtoMaxStream` characters, and cuts the stream to
/// handle into `ChanStream`: the one between the first two terminators, or up to the only one. With two terminators,
/// or with one behind the protocol's start character, the buffer is left as it is, so that the same stream may be cut
/// again; in any other case it is emptied.
/// A stream length of 0 becomes 48 and a terminator of 0 becomes 10 in the protocol's tables.
Cut CutStream(Tables& tables, int ch);

/// Devices that end a line by carriage return and line feed: the first carriage return of a stream becomes a blank.
void ReplaceFirstCarriageReturn(std::string& stream);
