#include "core/sentences.h"

#include <array>
#include <string>
#include <string_view>

#include "core/fixed_tables.h"
#include "core/tables.h"
#include "platform/operator_notice.h"
#include "platform/run_time_error.h"

namespace {

/// A piece of a sentence: words, or what is put in their place when the sentence is built.
struct Piece {
  enum Kind { Words, Channel, Number, Description, DescriptionForTheEar };

  Kind kind = Words;
  std::string_view words;

  constexpr Piece() = default;
  constexpr Piece(const char* text) : words(text) {}
  constexpr Piece(Kind what) : kind(what) {}
};

constexpr Piece kError = "Attention!, A Tarvex error has ";
constexpr Piece kCriticalError = "Attention!, A Critical Tarvex error has occured, possibly on Channel ";
constexpr Piece kInitializing = "occured trying to initialize Channel ";
constexpr Piece kOnChannel = "occured on Channel ";
constexpr Piece kDisabling = "I am restoring default com port settings and disabling channel ";
constexpr Piece kPleaseContact = "Please contact ";
constexpr Piece kAssistance = "Orvane Technical Support if you need additional assistance.";

struct Sentence {
  Occasion occasion;
  std::array<Piece, 12> pieces;  ///< the last ones may be empty
};

constexpr Sentence kSentences[] = {
    {Occasion::ComPortNotOpened,
     {kError, kInitializing, Piece::Channel, "'s  COM port. Channel  ", Piece::Channel, " will not be enabled. ",
      "Please check for other channels that may be set to the same com port. ",
      "Please un check the ENABLED check box in the upper right hand area of Channel ", Piece::Channel,
      "'s setup screen to eliminate this message. ", kPleaseContact, kAssistance}},
    {Occasion::ArcNetNotRegistered,
     {kError, kInitializing, Piece::Channel, "'s  ARC NET port. The ARC NET interface may not be functional.",
      "Try exiting and then restarting Tarvex. If this error still occurs, ", "try rebooting the computer. ",
      kPleaseContact, kAssistance}},
    {Occasion::ArcNetNotRead,
     {kError, "repeatedly occured trying to read Channel ", Piece::Channel,
      "'s  ARC NET Vantor. This Channel device I D is not responding ",
      " properly, and is probably slowing down the entire system.", " Channel ", Piece::Channel,
      " is being disabled. Please verify the Vantor's ArcNet ", "settings and retry the connection. ", kPleaseContact,
      kAssistance}},
    {Occasion::ComPortInvalid,
     {kError, kOnChannel, Piece::Channel, ",  You have selected an invalid COM port. ", kDisabling, Piece::Channel,
      "now.", kPleaseContact, kAssistance}},
    {Occasion::ComPortInUse,
     {kError, kOnChannel, Piece::Channel, ",  You have selected a COM port that is already is use. ", kDisabling,
      Piece::Channel, "now.", kPleaseContact, kAssistance}},
    {Occasion::SqlError,
     {kError, kOnChannel, Piece::Channel, ",  This is a S Q L Error, ", Piece::DescriptionForTheEar,
      ".  Please correct this problem now in your vant basic program, ",
      " or contact Orvane Technical Support for additional assistance."}},
    {Occasion::DatabaseError,
     {kError, kOnChannel, Piece::Channel, ",  This is a Database Error, ", Piece::DescriptionForTheEar,
      ".  Please correct this problem now, or contact Orvane Technical Support for additional assistance."}},
    {Occasion::CriticalError,
     {kCriticalError, Piece::Channel, ",  The error is number, ", Piece::Number, " , ", Piece::Description,
      " , Please contact Orvane Technical Support with this information."}},
};

/// A path in an error's description is read out so that it can be followed.
std::string ForTheEar(std::string_view text) {
  std::string spoken;
  for (const char character : text) {
    if (character == '\\') {
      spoken += " Backslash, ";
    } else if (character == ':') {
      spoken += " colon, ";
    } else {
      spoken += character;
    }
  }
  return spoken;
}

std::string Spoken(const Piece& piece, int ch, const RunTimeError& fault) {
  switch (piece.kind) {
    case Piece::Words:
      return std::string(piece.words);
    case Piece::Channel:
      return ch == kNoChannel ? "unknown" : DisplayNumber(ch);
    case Piece::Number:
      return std::to_string(fault.Number());
    case Piece::Description:
      return fault.Description();
    case Piece::DescriptionForTheEar:
      return ForTheEar(fault.Description());
  }
  return {};
}

}  // namespace

void Say(const Tables& tables, OperatorNotice& notice, Occasion occasion, int ch) {
  Say(tables, notice, occasion, ch, RunTimeError(0, {}));
}

void Say(const Tables& tables, OperatorNotice& notice, Occasion occasion, int ch, const RunTimeError& fault) {
  if (tables.SpeechEnabled == False) return;
  for (const Sentence& sentence : kSentences) {
    if (sentence.occasion != occasion) continue;
    std::string spoken;
    for (const Piece& piece : sentence.pieces) spoken += Spoken(piece, ch, fault);
    notice.Speak(spoken);
  }
}
