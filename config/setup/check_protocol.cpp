#include <algorithm>
#include <map>

#include "config/setup/check.h"
#include "config/setup/status_entry.h"
#include "core/data_field.h"
#include "core/fixed_tables.h"
#include "core/setting_limits.h"
#include "protocol/number.h"

namespace {

constexpr int kFirstStatusLine = 17;
constexpr int kFirstCommandLine = 7;
constexpr int kLargestCode = 31767;  // its answer is the code + 1000, and has to fit 16 bits

/// Collects what is found in one format.
class FormatCheck {
 public:
  FormatCheck(const Tables& tables, int proto)
      : tables_(tables),
        proto_(proto),
        status_(tables.ProtoStatusTable[proto]),
        file_(tables.ProtoFileName[proto].substr(1)) {}

  Findings Run() {
    CheckFraming();
    CheckDataFields();
    CheckStatusTable();
    CheckStreamLength();
    CheckCommands();
    return std::move(findings_);
  }

 private:
  void Add(const std::string& field, const std::string& problem, const std::string& cure) {
    findings_.push_back({file_, field, problem, cure});
  }
  void AddRow(int row, const std::string& problem, const std::string& cure) {
    Add("line " + std::to_string(kFirstStatusLine + row) + " (" + status_.Text(row, 0) + ")", problem, cure);
  }
  int StreamLength() const {
    const std::int32_t length = tables_.ProtoMaxStream[proto_];
    return length > 0 && length <= kLongestStream ? length : 48;
  }
  /// Notes that a stream has to be so long for a field to be found in it.
  void Need(std::int64_t characters) {
    longest_ = static_cast<int>(std::max<std::int64_t>(longest_, std::min<std::int64_t>(characters, 1'000'000)));
  }

  void CheckFraming();
  void CheckDataFields();
  void CheckDataField(const char* name, const DataField& field, int position);
  void CheckStatusTable();
  void CheckRow(int row);
  void CheckPartial(int row, int column, const char* what);
  void CheckMask(int row, const StatusRule& rule);
  void NoteFrame(const StatusRule& rule);
  bool SendsWithoutPause() const;
  void CheckStreamLength();
  void CheckCommands();

  const Tables& tables_;
  int proto_;
  const StatusTable& status_;
  std::string file_;
  int longest_ = 0;  ///< characters that a frame has at least, terminator included
  int guard_ = 0;    ///< character that a frame must not have, by a row that refuses longer ones; 0 for none
  Findings findings_;
};

void FormatCheck::CheckFraming() {
  struct Code {
    const char* name;
    std::int32_t value;
    int least, last;
  };
  const Code codes[] = {
      {"ProtoStartChar", tables_.ProtoStartChar[proto_], -1, 255},
      {"ProtoTerminator", tables_.ProtoTerminator[proto_], 0, 255},
      {"ProtoMaxStream", tables_.ProtoMaxStream[proto_], 0, kLongestStream},
  };
  for (const Code& code : codes) {
    if (code.value >= code.least && code.value <= code.last) continue;
    Add(code.name, "found " + std::to_string(code.value) + ", which nothing can use",
        "possible are " + std::to_string(std::max(0, code.least)) + " to " + std::to_string(code.last));
  }
}

void FormatCheck::CheckDataFields() {
  CheckDataField("ProtoGrossPos", GrossField(tables_, proto_), tables_.ProtoGrossPos[proto_]);
  CheckDataField("ProtoTarePos", TareField(tables_, proto_), tables_.ProtoTarePos[proto_]);
  CheckDataField("ProtoNetPos", NetField(tables_, proto_), tables_.ProtoNetPos[proto_]);
  const DataField id(tables_.ProtoIdEnable[proto_], tables_.ProtoIdPos[proto_], tables_.ProtoIdLen[proto_]);
  CheckDataField("ProtoIdPos", id, tables_.ProtoIdPos[proto_]);
}

void FormatCheck::CheckDataField(const char* name, const DataField& field, int position) {
  if (!field.enabled) return;
  if (position < 1) Add(name, "the field is enabled without a position", "give the first character, counted from 1");
  if (field.length < 1) return Add(name, "the field is enabled with a length of 0", "give the number of characters");
  const std::int64_t need = std::int64_t{field.position} + field.length;
  Need(need);
  if (need <= StreamLength()) return;
  Add(name,
      "the field ends at character " + std::to_string(need - 1) + " of a stream of " + std::to_string(StreamLength()),
      "Max Stream Length has to be above it");
}

void FormatCheck::CheckStatusTable() {
  int end = 0;
  while (end < StatusTable::kFileRows && !status_.Text(end, 0).empty()) ++end;
  if (end == StatusTable::kFileRows) {
    AddRow(end - 1, "the table has no empty row, so none of its rows counts", "end it with a row of six empty texts");
  }
  for (int row = 0; row < end; ++row) CheckRow(row);
  for (int row = end; row < StatusTable::kFileRows; ++row) {
    if (!status_.Text(row, 0).empty()) AddRow(row, "it stands behind an empty row and never counts", "move it up");
  }
}

void FormatCheck::CheckRow(int row) {
  const std::string& mark = status_.Text(row, 5);
  if (mark != "X") {
    if (!mark.empty()) AddRow(row, "\"" + mark + "\" does not enable it", "write \"X\", or nothing");
    return;
  }
  const StatusRule& rule = status_.Rule(row);
  const bool knownField =
      std::find(DdeFieldList().begin(), DdeFieldList().end(), status_.Text(row, 1)) != DdeFieldList().end();
  if (!knownField && rule.action == StatusAction::None) {
    AddRow(row, "there is no DDE field \"" + status_.Text(row, 1) + "\"", "choose one of the setup screen's list");
  } else if (rule.action == StatusAction::None) {
    AddRow(row, "it means nothing for the DDE field \"" + status_.Text(row, 1) + "\"",
           "choose the field that belongs to it");
  }
  if (rule.action == StatusAction::DecimalPlace && proto_ >= tables_.ProtoFormatMask.Size()) {
    AddRow(row, "custom formats 24 and up cannot take the decimal places from the stream",
           "use custom format 1 to 23, or choose Decimal Places on the channel");
  }
  CheckPartial(row, 2, "first bit");
  CheckPartial(row, 3, "number of bits");
  if (rule.position < 1) return AddRow(row, "it has no position", "give the character, counted from 1");
  const int need = rule.position + std::max(1, rule.length);
  if (!rule.unconditional && need - 1 > StreamLength()) {
    return AddRow(
        row, "it looks at character " + std::to_string(need - 1) + " of a stream of " + std::to_string(StreamLength()),
        "Max Stream Length has to be above it");
  }
  NoteFrame(rule);
  CheckMask(row, rule);
}

/// "3b4": a number, and behind "b" one digit.
void FormatCheck::CheckPartial(int row, int column, const char* what) {
  const std::string& cell = status_.Text(row, column);
  const std::size_t mark = cell.find('b');
  if (mark == std::string::npos) return;
  const std::string bits = cell.substr(mark + 1);
  const bool possible =
      bits.size() == 1 && bits[0] >= (column == 2 ? '0' : '1') && bits[0] <= (column == 2 ? '7' : '8');
  if (!possible) AddRow(row, "\"" + cell + "\" gives no " + what, "write one digit behind the \"b\"");
}

void FormatCheck::CheckMask(int row, const StatusRule& rule) {
  if (rule.unconditional) return;
  const std::string& mask = status_.Text(row, 4);
  if (rule.text) {
    if (static_cast<int>(mask.size()) == rule.length) return;
    return AddRow(row, "\"" + mask + "\" can never be found in " + std::to_string(rule.length) + " characters",
                  "field length and mask have to be of one length");
  }
  if (rule.expected >= 0 && (rule.expected & ~static_cast<int>(rule.fieldMask)) == 0) return;
  AddRow(row, "the bits that it looks at can never be \"" + mask + "\"",
         "the mask is the value of the byte with all other bits 0");
}

/// What a row says of the length of a frame. A row of errors proves nothing of what a good frame holds, but for one
/// that looks behind everything else for a character that must not be there.
void FormatCheck::NoteFrame(const StatusRule& rule) {
  const bool error = rule.action == StatusAction::Error || rule.action == StatusAction::ErrorOutOfRange;
  if (!error) return Need(rule.position + rule.length);
  if (!rule.text && rule.length == 0 && rule.expected > 0) guard_ = std::max(guard_, rule.position);
}

/// A device is taken for one unless all channels on it ask for their data.
bool FormatCheck::SendsWithoutPause() const {
  bool polled = false;
  for (int ch = 0; ch < kChannels; ++ch) {
    if (tables_.ChanEnabled[ch] != True || tables_.ChanProtocol[ch] != proto_) continue;
    if (tables_.ChanPollForData[ch] == False) return true;
    polled = true;
  }
  return !polled;
}

/// The last two frames always hold a whole one, and the newest. How long a frame is, a guard tells exactly; otherwise
/// it is as long as its farthest field at least.
void FormatCheck::CheckStreamLength() {
  constexpr int kDefaultStream = 48;
  constexpr int kUsualRest = 4;  // of a frame behind its last field
  const int length = StreamLength();
  if (!SendsWithoutPause() || longest_ == 0 || longest_ > length) return;
  const bool exact = guard_ > longest_;
  const int frame = exact ? guard_ - 1 : longest_;
  const auto add = [&](const std::string& problem) {
    Add("ProtoMaxStream", std::to_string(length) + problem + std::to_string(frame) + ", terminator included",
        exact ? "write " + std::to_string(2 * frame) : "write twice the length of a frame");
  };
  if (length < 2 * frame) {
    add(" characters do not hold two frames, so of a device that sends without pause frames are lost; a frame has " +
        std::string(exact ? "" : "at least "));
  } else if (exact ? length > 2 * frame : length == kDefaultStream && length > 2 * (frame + kUsualRest)) {
    add(" characters are more than two frames, so of a device that sends without pause the weight lags; a frame has " +
        std::string(exact ? "" : "perhaps "));
  } else if (length % 2 != 0) {
    add(" characters are no two frames; a frame has at least ");
  }
}

void FormatCheck::CheckCommands() {
  std::map<std::string, int> firstOf;
  for (int command = 0; command < kCommandRows; ++command) {
    if (tables_.ProtoCmdEnabled[command][proto_] != True) continue;
    const std::string place = "line " + std::to_string(kFirstCommandLine + command);
    const std::string& text = tables_.ProtoCmdText[0][command][proto_];
    const std::string& code = tables_.ProtoCmdText[2][command][proto_];
    if (text.ends_with('~')) {
      const bool alone = text.find('~') + 1 == text.size();
      Add(place,
          "the device text ends in \"~\"" + std::string(alone ? ", which carries one character of the parameter"
                                                              : ", and its last one goes to the device as it stands"),
          "put a character behind the field");
    }
    const double number = NumericValue(code);
    if (number < 1 || number > kLargestCode || number != static_cast<double>(static_cast<int>(number))) {
      Add(place, "\"" + code + "\" is no code", "possible are 1 to " + std::to_string(kLargestCode));
      continue;
    }
    const auto [first, isNew] = firstOf.emplace(std::to_string(static_cast<int>(number)), command);
    if (!isNew) {
      Add(place, "the code " + code + " is also that of line " + std::to_string(kFirstCommandLine + first->second),
          "give each command a code of its own");
    }
  }
}

}  // namespace

Findings CheckProtocol(const Tables& tables, int proto) { return FormatCheck(tables, proto).Run(); }
