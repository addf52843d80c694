#pragma once

#include <array>
#include <string>
#include <string_view>
#include <vector>

class StatusTable;
struct Tables;

/// What a stream says and why, for people who set up a protocol. Characters count from 1.

/// A data field of the protocol.
struct ExplainedField {
  std::string_view name;    ///< as the setup screen calls it: "Gross_Wt"
  int first = 0, last = 0;  ///< its characters; `last` below `first` for a length of 0
  bool enabled = false;
  bool found = false;   ///< the stream is long enough for it
  bool taken = false;   ///< it is shown and published in the mode of this stream
  std::string raw{};    ///< its characters as received
  std::string value{};  ///< the formatted weight or ID
  std::string fault{};  ///< why it could not be formatted
};

/// A row of the status table.
struct ExplainedRow {
  int row = 0;
  int first = 0, last = 0;
  bool enabled = false;
  bool text = false;        ///< compared as text; otherwise one byte under a mask
  bool longEnough = false;  ///< the stream holds the field, and one character more
  bool matched = false;
  std::string found{};     ///< the characters, or the masked byte in decimal
  std::string expected{};  ///< what they are compared with
};

struct ExplainedStream {
  std::array<ExplainedField, 4> fields{};  ///< gross, tare, net, ID
  std::vector<ExplainedRow> rows{};        ///< those that are walked
  std::string mode{}, units{}, error{};
  bool motion = false;
  std::string fault{};  ///< what decoding raised
};

/// Decodes `ChanStream` of channel `ch` as reception does, publishing nothing. `tables` are the caller's own: what the
/// channel remembers from stream to stream is kept in them.
ExplainedStream ExplainStream(Tables& tables, int ch);

/// What row `row` of the table finds in the stream, enabled or not.
ExplainedRow ExplainRow(const StatusTable& table, int row, std::string_view stream);
