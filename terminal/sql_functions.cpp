#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <cstddef>
#include <limits>
#include <utility>

#include "platform/run_time_error.h"
#include "protocol/number.h"
#include "terminal/sql_dialect.h"

namespace {

using Arguments = std::vector<SqlValue>;

constexpr std::size_t kNone = std::string_view::npos;
constexpr std::size_t kLongestPattern = 50'000;  ///< bytes
constexpr unsigned kStepsBetweenLooks = 4096;    ///< of a comparison, whether it is to end
constexpr double kIntegerLimit = 9.2e18;         ///< within this a real's whole part is an integer

bool IsNull(const SqlValue& value) { return std::holds_alternative<std::monostate>(value); }
bool IsDigit(char character) { return character >= '0' && character <= '9'; }
char Lower(char character) {
  return character >= 'A' && character <= 'Z' ? static_cast<char>(character + 32) : character;
}

double Number(const SqlValue& value) {
  if (const auto* integer = std::get_if<std::int64_t>(&value)) return static_cast<double>(*integer);
  if (const auto* real = std::get_if<double>(&value)) return *real;
  const auto* text = std::get_if<std::string>(&value);
  return text ? NumericValue(*text) : 0;
}

/// A count of characters; one beyond all texts is as good as the largest.
std::size_t Count(const char* function, const SqlValue& value, double least) {
  const double number = std::round(Number(value));
  if (!(number >= least)) {
    throw RunTimeError(ErrorNumber::InvalidCall,
                       std::string(function) + ": " + SqlText(value) + " is no position or length");
  }
  return number > 1e15 ? kNone : static_cast<std::size_t>(number);
}

/// Bytes of the character there. What is no valid UTF-8 counts byte by byte.
std::size_t CharacterSize(std::string_view text, std::size_t at) {
  const auto lead = static_cast<unsigned char>(text[at]);
  const std::size_t size = lead < 0xC2 ? 1 : lead < 0xE0 ? 2 : lead < 0xF0 ? 3 : lead < 0xF5 ? 4 : 1;
  if (at + size > text.size()) return 1;
  for (std::size_t next = 1; next < size; ++next) {
    if ((static_cast<unsigned char>(text[at + next]) & 0xC0) != 0x80) return 1;
  }
  return size;
}

/// Place behind so many characters from `at`, the text's end at most.
std::size_t Skip(std::string_view text, std::size_t at, std::size_t characters) {
  for (; characters > 0 && at < text.size(); --characters) at += CharacterSize(text, at);
  return at;
}

std::size_t Characters(std::string_view text) {
  std::size_t count = 0;
  for (std::size_t at = 0; at < text.size(); at += CharacterSize(text, at)) ++count;
  return count;
}

// ---- LIKE

enum class Wildcard { AnyRun, AnyOne, Digit, Class, Literal };

struct Element {
  Wildcard kind;
  std::string_view body;  ///< the literal character, or what stands in the brackets
  std::size_t size;       ///< in the pattern
};

/// A pattern in one of the two dialects. One that holds a wildcard of the old one is in the old one.
struct Pattern {
  std::string_view text;
  std::string_view escape;  ///< given: the pattern is in the engine's dialect
  bool old;

  Element At(std::size_t at) const {
    const char first = text[at];
    if (old) {
      if (first == '*') return {Wildcard::AnyRun, {}, 1};
      if (first == '?') return {Wildcard::AnyOne, {}, 1};
      if (first == '#') return {Wildcard::Digit, {}, 1};
      const std::size_t close = first == '[' ? text.find(']', at + 1) : kNone;
      if (close != kNone) return {Wildcard::Class, text.substr(at + 1, close - at - 1), close - at + 1};
    } else if (!escape.empty() && text.substr(at).starts_with(escape) && at + escape.size() < text.size()) {
      const std::size_t size = CharacterSize(text, at + escape.size());
      return {Wildcard::Literal, text.substr(at + escape.size(), size), escape.size() + size};
    } else if (first == '%' || first == '_') {
      return {first == '%' ? Wildcard::AnyRun : Wildcard::AnyOne, {}, 1};
    }
    const std::size_t size = CharacterSize(text, at);
    return {Wildcard::Literal, text.substr(at, size), size};
  }
};

bool SameLetters(std::string_view left, std::string_view right) {
  return std::equal(left.begin(), left.end(), right.begin(), right.end(),
                    [](char a, char b) { return Lower(a) == Lower(b); });
}

/// Whether `letter` is one of "abc", of "a-z", or with a "!" in front none of them.
bool InClass(std::string_view letter, std::string_view body) {
  const bool negated = body.starts_with('!');
  if (negated) body.remove_prefix(1);
  const auto lower = [](std::string_view text) {
    std::string result(text);
    std::transform(result.begin(), result.end(), result.begin(), Lower);
    return result;
  };
  const std::string wanted = lower(letter);
  for (std::size_t at = 0; at < body.size();) {
    std::size_t size = CharacterSize(body, at);
    const std::string from = lower(body.substr(at, size));
    at += size;
    std::string to = from;
    if (at + 1 < body.size() && body[at] == '-') {
      size = CharacterSize(body, at + 1);
      to = lower(body.substr(at + 1, size));
      at += 1 + size;
    }
    if (from <= wanted && wanted <= to) return !negated;
  }
  return negated;
}

bool Fits(const Element& element, std::string_view letter) {
  switch (element.kind) {
    case Wildcard::Digit:
      return IsDigit(letter[0]);
    case Wildcard::Class:
      return InClass(letter, element.body);
    case Wildcard::Literal:
      return SameLetters(element.body, letter);
    default:
      return true;
  }
}

/// Goes back to the last run alone: no shorter run of an earlier one could help.
bool Matches(std::string_view text, const Pattern& pattern, const SqlSurroundings& surroundings) {
  std::size_t at = 0;
  std::size_t in = 0;
  std::size_t behindRun = kNone;
  std::size_t runEnd = 0;
  for (unsigned step = 1; at < text.size(); ++step) {
    if (step % kStepsBetweenLooks == 0 && surroundings.Stopped()) {
      throw RunTimeError(ErrorNumber::InvalidCall, "LIKE: interrupted");
    }
    const std::size_t size = CharacterSize(text, at);
    if (in < pattern.text.size()) {
      const Element element = pattern.At(in);
      if (element.kind == Wildcard::AnyRun) {
        in += element.size;
        if (in == pattern.text.size()) return true;
        behindRun = in;
        runEnd = at;
        continue;
      }
      if (Fits(element, text.substr(at, size))) {
        in += element.size;
        at += size;
        continue;
      }
    }
    if (behindRun == kNone) return false;
    runEnd += CharacterSize(text, runEnd);
    at = runEnd;
    in = behindRun;
  }
  while (in < pattern.text.size() && pattern.At(in).kind == Wildcard::AnyRun) ++in;
  return in == pattern.text.size();
}

SqlValue Like(const Arguments& arguments, const SqlSurroundings& surroundings) {
  if (std::any_of(arguments.begin(), arguments.end(), IsNull)) return {};
  const std::string pattern = SqlText(arguments[0]);
  const std::string escape = arguments.size() > 2 ? SqlText(arguments[2]) : "";
  if (pattern.size() > kLongestPattern) throw RunTimeError(ErrorNumber::InvalidCall, "LIKE: the pattern is too long");
  if (arguments.size() > 2 && Characters(escape) != 1) {
    throw RunTimeError(ErrorNumber::InvalidCall, "LIKE: behind ESCAPE stands one character");
  }
  const bool old = escape.empty() && pattern.find_first_of("*?#[") != kNone;
  return std::int64_t{Matches(SqlText(arguments[1]), {pattern, escape, old}, surroundings)};
}

// ---- Format

/// Number by a picture of # 0 . and one or more commas, which part the thousands.
std::string NumberByPicture(const SqlValue& value, std::string picture) {
  const bool grouped = picture.find(',') != kNone;
  std::erase(picture, ',');
  const auto* real = std::get_if<double>(&value);
  const Decimal number = real ? Decimal::FromDouble(*real) : Decimal::FromText(SqlText(value));
  std::string text(FormatNumber(number, picture).View());
  if (!grouped) return text;
  const std::size_t first = text.starts_with('-') ? 1 : 0;
  for (std::size_t at = std::min(text.find('.'), text.size()); at > first + 3;) text.insert(at -= 3, ",");
  return text;
}

/// `iso` by a picture of letters and what stands between them; m behind h is minutes.
std::string DateByPicture(std::string_view iso, const std::string& picture) {
  std::string whole = iso.size() == 8 ? "1899-12-30 " : std::string(iso);  // a time alone is of the first day
  if (iso.size() == 8) whole += iso;
  if (iso.size() == 10) whole += " 00:00:00";
  struct Field {
    std::string_view letters;
    std::size_t start;
    std::size_t size;
  };
  constexpr std::array<Field, 12> kFields = {{{"yyyy", 0, 4},
                                              {"yy", 2, 2},
                                              {"mm", 5, 2},
                                              {"m", 5, 2},
                                              {"dd", 8, 2},
                                              {"d", 8, 2},
                                              {"hh", 11, 2},
                                              {"h", 11, 2},
                                              {"nn", 14, 2},
                                              {"n", 14, 2},
                                              {"ss", 17, 2},
                                              {"s", 17, 2}}};
  std::string text;
  bool hours = false;
  for (std::size_t at = 0; at < picture.size();) {
    const char letter = Lower(picture[at]);
    if (std::string_view("/-:. ,").find(letter) != kNone) {
      text += picture[at++];
      continue;
    }
    std::string run;
    while (at < picture.size() && Lower(picture[at]) == letter) run += Lower(picture[at++]);
    if (letter == 'm' && hours) std::fill(run.begin(), run.end(), 'n');
    hours = letter == 'h';
    const auto field =
        std::find_if(kFields.begin(), kFields.end(), [&](const Field& row) { return row.letters == run; });
    if (field == kFields.end()) {
      throw RunTimeError(ErrorNumber::InvalidCall, "Format: the picture \"" + picture + "\" is not known");
    }
    const std::string_view digits = std::string_view(whole).substr(field->start, field->size);
    text += run.size() == 1 && digits[0] == '0' ? digits.substr(1) : digits;
  }
  return text;
}

bool IsNumber(std::string_view text) {
  text = Trim(text);
  double ignored = 0;
  const auto read = std::from_chars(text.data(), text.data() + text.size(), ignored);
  return read.ec == std::errc{} && read.ptr == text.data() + text.size();
}

/// Text that is neither number nor date stays as it is.
SqlValue Format(const Arguments& arguments, const SqlSurroundings&) {
  const SqlValue& value = arguments[0];
  const std::string picture = SqlText(arguments[1]);
  if (IsNull(value) || picture.empty()) return IsNull(value) ? SqlValue{} : SqlText(value);
  const std::string* text = std::get_if<std::string>(&value);
  if (picture.find_first_not_of("#0.,") == kNone) {
    return text && !IsNumber(*text) ? *text : NumberByPicture(value, picture);
  }
  const std::optional<std::string> date = text ? SqlDateText(*text) : std::nullopt;
  if (!date && text && !IsNumber(*text)) return *text;
  if (!date) {
    throw RunTimeError(ErrorNumber::InvalidCall,
                       "Format: " + SqlText(value) + " cannot be shown by the picture \"" + picture + "\"");
  }
  return DateByPicture(*date, picture);
}

// ---- texts and numbers

/// Null in, null out: what all functions of one text have in common.
template <SqlValue (*call)(const std::string& text, const Arguments& arguments)>
SqlValue OfText(const Arguments& arguments, const SqlSurroundings&) {
  if (std::any_of(arguments.begin(), arguments.end(), IsNull)) return {};
  return call(SqlText(arguments[0]), arguments);
}

SqlValue Left(const std::string& text, const Arguments& arguments) {
  return text.substr(0, Skip(text, 0, Count("Left", arguments[1], 0)));
}

SqlValue Right(const std::string& text, const Arguments& arguments) {
  const std::size_t count = Count("Right", arguments[1], 0);
  const std::size_t all = Characters(text);
  return text.substr(Skip(text, 0, all - std::min(all, count)));
}

SqlValue Mid(const std::string& text, const Arguments& arguments) {
  const std::size_t start = Skip(text, 0, Count("Mid", arguments[1], 1) - 1);
  const std::size_t end = arguments.size() > 2 ? Skip(text, start, Count("Mid", arguments[2], 0)) : text.size();
  return text.substr(start, end - start);
}

SqlValue UCase(const std::string& text, const Arguments&) { return UpperCase(text); }

SqlValue LCase(const std::string& text, const Arguments&) {
  std::string lower = text;
  std::transform(lower.begin(), lower.end(), lower.begin(), Lower);
  return lower;
}

SqlValue Len(const std::string& text, const Arguments&) { return static_cast<std::int64_t>(Characters(text)); }
SqlValue Val(const std::string& text, const Arguments&) { return NumericValue(text); }

SqlValue Str(const std::string&, const Arguments& arguments) {
  const auto* given = std::get_if<std::string>(&arguments[0]);
  const std::string text = SqlText(given ? SqlValue(NumericValue(*given)) : arguments[0]);
  return text.starts_with('-') ? text : " " + text;
}

SqlValue Int(const std::string&, const Arguments& arguments) {
  if (std::holds_alternative<std::int64_t>(arguments[0])) return arguments[0];
  const double whole = std::floor(Number(arguments[0]));
  return std::fabs(whole) < kIntegerLimit ? SqlValue(static_cast<std::int64_t>(whole)) : SqlValue(whole);
}

SqlValue Nz(const Arguments& arguments, const SqlSurroundings&) {
  if (!IsNull(arguments[0])) return arguments[0];
  return arguments.size() > 1 ? arguments[1] : SqlValue(std::string{});
}

SqlValue Join(const Arguments& arguments, const SqlSurroundings&) {
  std::string text;
  for (const SqlValue& value : arguments) text += SqlText(value);
  return text;
}

SqlValue Now(const Arguments&, const SqlSurroundings& surroundings) { return surroundings.LocalTime(); }
SqlValue Date(const Arguments&, const SqlSurroundings& surroundings) { return surroundings.LocalTime().substr(0, 10); }
SqlValue Time(const Arguments&, const SqlSurroundings& surroundings) { return surroundings.LocalTime().substr(11); }

constexpr SqlFunction kFunctions[] = {
    {"like", 2, 3, true, Like},
    {"left", 2, 2, true, OfText<Left>},
    {"right", 2, 2, true, OfText<Right>},
    {"mid", 2, 3, true, OfText<Mid>},
    {"ucase", 1, 1, true, OfText<UCase>},
    {"lcase", 1, 1, true, OfText<LCase>},
    {"len", 1, 1, true, OfText<Len>},
    {"val", 1, 1, true, OfText<Val>},
    {"str", 1, 1, true, OfText<Str>},
    {"int", 1, 1, true, OfText<Int>},
    {"nz", 1, 2, true, Nz},
    {"format", 2, 2, true, Format},
    {"tarvex_join", 2, -1, true, Join},
    {"now", 0, 0, false, Now},
    {"date", 0, 0, false, Date},
    {"time", 0, 0, false, Time},
};

}  // namespace

std::string SqlText(const SqlValue& value) {
  if (const auto* text = std::get_if<std::string>(&value)) return *text;
  if (const auto* integer = std::get_if<std::int64_t>(&value)) return std::to_string(*integer);
  const auto* real = std::get_if<double>(&value);
  if (!real) return {};
  if (!std::isfinite(*real)) return *real > 0 ? "Inf" : "-Inf";  // the engine has no other such value
  return std::string(GeneralText(Decimal::FromDouble(*real)).View());
}

std::span<const SqlFunction> SqlFunctions() { return kFunctions; }
