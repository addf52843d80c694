#include "terminal/sql_dialect.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <optional>
#include <vector>

#include "protocol/number.h"

namespace {

bool IsDigit(char c) { return c >= '0' && c <= '9'; }
bool IsLetter(char c) { return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z'); }
bool IsWordCharacter(char c) { return IsLetter(c) || IsDigit(c) || c == '_' || static_cast<unsigned char>(c) >= 128; }
bool IsBlank(char c) { return c == ' ' || c == '\t' || c == '\r' || c == '\n'; }
char Lower(char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; }

// ---- Tokens

enum class Kind { Gap, Word, Number, Quoted, Date, Symbol };

struct Token {
  Kind kind;
  std::string text;

  bool Is(std::string_view word) const { return kind == Kind::Word && UpperCase(text) == word; }
  bool IsSymbol(char c) const { return kind == Kind::Symbol && text.size() == 1 && text.front() == c; }
};

using Tokens = std::vector<Token>;

/// Length of what begins at the front with a quote: to the closing one, which is doubled where it is meant as it
/// stands, or to the end.
std::size_t QuotedSize(std::string_view rest) {
  const char close = rest.front() == '[' ? ']' : rest.front();
  std::size_t at = 1;
  while (at < rest.size()) {
    if (rest[at] != close) {
      ++at;
    } else if (close != ']' && at + 1 < rest.size() && rest[at + 1] == close) {
      at += 2;
    } else {
      return at + 1;
    }
  }
  return rest.size();
}

std::size_t CommentSize(std::string_view rest) {
  if (rest.starts_with("--")) return std::min(rest.find('\n'), rest.size() - 1) + 1;
  const std::size_t end = rest.find("*/", 2);
  return end == std::string_view::npos ? rest.size() : end + 2;
}

/// Length of "#...#" if that is a date or a time; 0 if not.
std::size_t DateSize(std::string_view rest) {
  constexpr std::size_t kLongest = 32;
  const std::size_t end = rest.substr(0, kLongest).find('#', 1);
  if (end == std::string_view::npos || end < 2) return 0;
  const std::string_view content = rest.substr(1, end - 1);
  const bool possible = std::all_of(content.begin(), content.end(), [](char c) {
    return IsDigit(c) || c == '/' || c == '-' || c == ':' || c == ' ' || std::string_view("AaPpMm").find(c) < 6;
  });
  return possible && IsDigit(Trim(content).empty() ? ' ' : Trim(content).front()) ? end + 1 : 0;
}

template <typename Belongs>
std::size_t RunOf(std::string_view rest, const Belongs& belongs) {
  return static_cast<std::size_t>(std::find_if_not(rest.begin(), rest.end(), belongs) - rest.begin());
}

Token NextToken(std::string_view rest) {
  const char c = rest.front();
  Kind kind = Kind::Symbol;
  std::size_t size = 1;
  if (IsBlank(c)) {
    kind = Kind::Gap;
    size = RunOf(rest, IsBlank);
  } else if (rest.starts_with("--") || rest.starts_with("/*")) {
    kind = Kind::Gap;
    size = CommentSize(rest);
  } else if (c == '\'' || c == '"' || c == '`' || c == '[') {
    kind = Kind::Quoted;
    size = QuotedSize(rest);
  } else if (c == '#' && DateSize(rest) > 0) {
    kind = Kind::Date;
    size = DateSize(rest);
  } else if (IsDigit(c)) {
    kind = Kind::Number;
    size = RunOf(rest, [](char each) { return IsWordCharacter(each) || each == '.'; });
  } else if (IsWordCharacter(c)) {
    kind = Kind::Word;
    size = RunOf(rest, IsWordCharacter);
  }
  return {kind, std::string(rest.substr(0, size))};
}

Tokens Cut(std::string_view statement) {
  Tokens tokens;
  while (!statement.empty()) {
    tokens.push_back(NextToken(statement));
    statement.remove_prefix(tokens.back().text.size());
  }
  return tokens;
}

std::string Join(const Tokens& tokens) {
  std::string statement;
  for (const Token& token : tokens) statement += token.text;
  return statement;
}

/// First token from `at` on that is no gap; the count of tokens if there is none.
std::size_t Next(const Tokens& tokens, std::size_t at) {
  while (at < tokens.size() && tokens[at].kind == Kind::Gap) ++at;
  return at;
}

bool HasSymbol(const Tokens& tokens, std::size_t at, char symbol) {
  return at < tokens.size() && tokens[at].IsSymbol(symbol);
}

bool HasWord(const Tokens& tokens, std::size_t at, std::string_view word) {
  return at < tokens.size() && tokens[at].Is(word);
}

void Remove(Tokens& tokens, std::size_t first, std::size_t last) {
  for (std::size_t at = first; at <= last; ++at) tokens[at] = {Kind::Gap, {}};
}

// ---- Rules

/// "#11/23/2026 14:00:05#" is text that sorts as dates do. The parts of a date are month, day, year.
void RewriteDates(Tokens& tokens) {
  for (Token& token : tokens) {
    if (token.kind != Kind::Date) continue;
    const std::string content = UpperCase(token.text.substr(1, token.text.size() - 2));
    int first = 0, second = 0, third = 0, hour = 0, minute = 0, secondOfMinute = 0;
    std::string result;
    int used = 0;
    const bool american = std::sscanf(content.c_str(), "%d/%d/%d%n", &first, &second, &third, &used) == 3;
    const bool iso = !american && std::sscanf(content.c_str(), "%d-%d-%d%n", &third, &first, &second, &used) == 3;
    if (american || iso) {
      if (third >= 0 && third < 30) third += 2000;
      if (third >= 30 && third < 100) third += 1900;
      char text[64];
      std::snprintf(text, sizeof text, "%04d-%02d-%02d", third, first, second);
      result = text;
    } else {
      used = 0;
    }
    const std::string time = content.substr(static_cast<std::size_t>(used));
    if (std::sscanf(time.c_str(), "%d:%d:%d", &hour, &minute, &secondOfMinute) >= 2) {
      if (time.find("PM") != std::string::npos && hour < 12) hour += 12;
      if (time.find("AM") != std::string::npos && hour == 12) hour = 0;
      char text[64];
      std::snprintf(text, sizeof text, "%02d:%02d:%02d", hour, minute, secondOfMinute);
      result += (result.empty() ? "" : " ") + std::string(text);
    }
    if (!result.empty()) token = {Kind::Quoted, "'" + result + "'"};
  }
}

struct WordRule {
  std::string_view word;
  bool withParenthesis;  ///< only in front of "("
  const char* replacement;
};

/// Constants, and names that the engine takes for something else.
constexpr WordRule kWords[] = {
    {"TRUE", false, "-1"},      {"FALSE", false, "0"},        {"DISTINCTROW", false, "DISTINCT"},
    {"LEFT", true, "\"Left\""}, {"RIGHT", true, "\"Right\""},
};

void RewriteWords(Tokens& tokens) {
  for (std::size_t at = 0; at < tokens.size(); ++at) {
    if (tokens[at].kind != Kind::Word || (at > 0 && tokens[at - 1].IsSymbol('.'))) continue;
    for (const WordRule& rule : kWords) {
      if (!tokens[at].Is(rule.word) || HasSymbol(tokens, Next(tokens, at + 1), '(') != rule.withParenthesis) continue;
      tokens[at].text = rule.replacement;
      break;
    }
  }
}

struct ClockRule {
  std::string_view word;
  const char* replacement;
};

constexpr ClockRule kClock[] = {
    {"NOW", "datetime('now','localtime')"}, {"DATE", "date('now','localtime')"}, {"TIME", "time('now','localtime')"}};

/// Now(), Date() and Time(), which have no argument.
void RewriteClock(Tokens& tokens) {
  for (std::size_t at = 0; at < tokens.size(); ++at) {
    for (const ClockRule& rule : kClock) {
      if (!tokens[at].Is(rule.word)) continue;
      const std::size_t open = Next(tokens, at + 1);
      const std::size_t close = Next(tokens, open + 1);
      if (!HasSymbol(tokens, open, '(') || !HasSymbol(tokens, close, ')')) continue;
      tokens[at].text = rule.replacement;
      Remove(tokens, open, close);
      break;
    }
  }
}

void RewriteConcatenation(Tokens& tokens) {
  for (Token& token : tokens) {
    if (token.IsSymbol('&')) token.text = "||";
  }
}

/// "DELETE * FROM t".
void RewriteDelete(Tokens& tokens) {
  const std::size_t first = Next(tokens, 0);
  const std::size_t star = Next(tokens, first + 1);
  if (HasWord(tokens, first, "DELETE") && HasSymbol(tokens, star, '*')) Remove(tokens, star, star);
}

/// Where the SELECT ends that holds token `at`: at its closing parenthesis, at a semicolon or at the end.
std::size_t EndOfSelect(const Tokens& tokens, std::size_t at) {
  int depth = 0;
  for (; at < tokens.size(); ++at) {
    if (tokens[at].IsSymbol('(')) ++depth;
    if (tokens[at].IsSymbol(')') && --depth < 0) return at;
    if (tokens[at].IsSymbol(';') && depth == 0) return at;
  }
  return at;
}

/// "SELECT TOP 5 ..." is a SELECT with a limit at its end.
void RewriteTop(Tokens& tokens) {
  for (std::size_t at = 0; at < tokens.size(); ++at) {
    if (!tokens[at].Is("SELECT")) continue;
    std::size_t top = Next(tokens, at + 1);
    if (HasWord(tokens, top, "DISTINCT") || HasWord(tokens, top, "ALL")) top = Next(tokens, top + 1);
    const std::size_t count = Next(tokens, top + 1);
    if (!HasWord(tokens, top, "TOP") || count >= tokens.size() || tokens[count].kind != Kind::Number) continue;
    if (HasWord(tokens, Next(tokens, count + 1), "PERCENT")) continue;
    const std::string limit = " LIMIT " + tokens[count].text;
    Remove(tokens, top, count);
    const auto end = static_cast<std::ptrdiff_t>(EndOfSelect(tokens, count + 1));
    tokens.insert(tokens.begin() + end, {Kind::Gap, limit});
  }
}

/// "SELECT a, b INTO t FROM s" makes a new table.
void RewriteMakeTable(Tokens& tokens) {
  const std::size_t first = Next(tokens, 0);
  if (!HasWord(tokens, first, "SELECT")) return;
  int depth = 0;
  for (std::size_t at = first; at < tokens.size() && !(depth == 0 && tokens[at].Is("FROM")); ++at) {
    if (tokens[at].IsSymbol('(')) ++depth;
    if (tokens[at].IsSymbol(')')) --depth;
    const std::size_t name = Next(tokens, at + 1);
    const bool named = name < tokens.size() && (tokens[name].kind == Kind::Word || tokens[name].kind == Kind::Quoted);
    if (depth != 0 || !tokens[at].Is("INTO") || !named || !HasWord(tokens, Next(tokens, name + 1), "FROM")) continue;
    const std::string table = tokens[name].text;
    Remove(tokens, at, name);
    tokens.insert(tokens.begin(), {Kind::Gap, "CREATE TABLE " + table + " AS "});
    return;
  }
}

constexpr void (*kRules[])(Tokens&) = {RewriteDates,  RewriteWords, RewriteClock,    RewriteConcatenation,
                                       RewriteDelete, RewriteTop,   RewriteMakeTable};

// ---- Functions

using Arguments = std::span<const SqlValue>;

bool IsNull(const SqlValue& value) { return std::holds_alternative<std::monostate>(value); }

std::string TextOf(const SqlValue& value) {
  if (const auto* const text = std::get_if<std::string>(&value)) return *text;
  if (const auto* const integer = std::get_if<std::int64_t>(&value)) return std::to_string(*integer);
  if (const auto* const real = std::get_if<double>(&value)) {
    return std::string(GeneralText(Decimal::FromDouble(*real)).View());
  }
  return {};
}

double NumberOf(const SqlValue& value) {
  if (const auto* const integer = std::get_if<std::int64_t>(&value)) return static_cast<double>(*integer);
  if (const auto* const real = std::get_if<double>(&value)) return *real;
  return NumericValue(TextOf(value));
}

/// A count of characters, 0 for less.
std::size_t CountOf(const SqlValue& value) {
  return static_cast<std::size_t>(std::min(std::max(NumberOf(value), 0.0), 1e9));
}

/// As a whole number if it is one.
SqlValue NumberValue(double number) {
  if (std::floor(number) == number && std::fabs(number) < 1e15) return static_cast<std::int64_t>(number);
  return number;
}

SqlValue Left(Arguments arguments) {
  if (IsNull(arguments[0])) return {};
  return TextOf(arguments[0]).substr(0, CountOf(arguments[1]));
}

SqlValue Right(Arguments arguments) {
  if (IsNull(arguments[0])) return {};
  const std::string text = TextOf(arguments[0]);
  return text.substr(text.size() - std::min(text.size(), CountOf(arguments[1])));
}

SqlValue Mid(Arguments arguments) {
  if (IsNull(arguments[0])) return {};
  const std::string text = TextOf(arguments[0]);
  const std::size_t first = std::max<std::size_t>(1, CountOf(arguments[1])) - 1;
  if (first >= text.size()) return std::string();
  return text.substr(first, arguments.size() > 2 ? CountOf(arguments[2]) : std::string::npos);
}

SqlValue UCase(Arguments arguments) {
  if (IsNull(arguments[0])) return {};
  return UpperCase(TextOf(arguments[0]));
}

SqlValue LCase(Arguments arguments) {
  if (IsNull(arguments[0])) return {};
  std::string text = TextOf(arguments[0]);
  std::transform(text.begin(), text.end(), text.begin(), Lower);
  return text;
}

SqlValue Len(Arguments arguments) {
  if (IsNull(arguments[0])) return {};
  return static_cast<std::int64_t>(TextOf(arguments[0]).size());
}

SqlValue Val(Arguments arguments) { return NumberValue(NumericValue(TextOf(arguments[0]))); }

/// A number that is not negative has a blank in the place of its sign.
SqlValue Str(Arguments arguments) {
  if (IsNull(arguments[0])) return {};
  const double number = NumberOf(arguments[0]);
  return (number < 0 ? "" : " ") + TextOf(NumberValue(number));
}

SqlValue Int(Arguments arguments) {
  if (IsNull(arguments[0])) return {};
  return NumberValue(std::floor(NumberOf(arguments[0])));
}

SqlValue IIf(Arguments arguments) {
  const bool holds = !IsNull(arguments[0]) && NumberOf(arguments[0]) != 0;
  return holds ? arguments[1] : arguments[2];
}

SqlValue Nz(Arguments arguments) {
  if (!IsNull(arguments[0])) return arguments[0];
  return arguments.size() > 1 ? arguments[1] : SqlValue(std::string());
}

std::string WithThousands(std::string number) {
  const std::size_t point = std::min(number.find('.'), number.size());
  const std::size_t sign = number.starts_with('-') ? 1 : 0;
  for (std::size_t at = point; at > sign + 3;) number.insert(at -= 3, ",");
  return number;
}

std::string FormatByNumberPicture(double number, std::string picture) {
  const bool thousands = picture.find(',') != std::string::npos;
  std::erase(picture, ',');
  std::string text(FormatNumber(Decimal::FromDouble(number), picture).View());
  return thousands ? WithThousands(std::move(text)) : text;
}

struct Moment {
  int year = 0, month = 0, day = 0, hour = 0, minute = 0, second = 0;
};

/// A date or a time as this dialect keeps it.
std::optional<Moment> MomentOf(const std::string& text) {
  Moment moment;
  const int found = std::sscanf(text.c_str(), "%4d-%2d-%2d %2d:%2d:%2d", &moment.year, &moment.month, &moment.day,
                                &moment.hour, &moment.minute, &moment.second);
  if (found >= 3) return moment;
  moment = Moment();
  if (std::sscanf(text.c_str(), "%2d:%2d:%2d", &moment.hour, &moment.minute, &moment.second) >= 2) return moment;
  return std::nullopt;
}

/// Runs of y, m, d, h, n and s are parts of the moment; an m behind an h is a minute. The rest stands for itself.
std::string FormatByDatePicture(const Moment& moment, std::string_view picture) {
  std::string text;
  char before = ' ';
  while (!picture.empty()) {
    const char letter = Lower(picture.front());
    const std::size_t size = RunOf(picture, [&](char c) { return Lower(c) == letter; });
    const bool minute = letter == 'n' || (letter == 'm' && before == 'h');
    const std::size_t known = std::string_view("ymdhns").find(letter);
    if (known == std::string_view::npos) {
      text += picture.substr(0, size);
    } else {
      const int parts[] = {moment.year,  minute ? moment.minute : moment.month, moment.day, moment.hour, moment.minute,
                           moment.second};
      const bool shortYear = letter == 'y' && size < 4;
      char part[32];
      std::snprintf(part, sizeof part, "%0*d",
                    letter == 'y' ? (shortYear ? 2 : 4)
                    : size > 1    ? 2
                                  : 1,
                    shortYear ? parts[0] % 100 : parts[known]);
      text += part;
      before = letter;
    }
    picture.remove_prefix(size);
  }
  return text;
}

struct NamedPicture {
  std::string_view name;
  const char* picture;
};

constexpr NamedPicture kPictures[] = {
    {"FIXED", "0.00"},         {"STANDARD", "#,##0.00"},     {"CURRENCY", "#,##0.00"},
    {"GENERAL NUMBER", ""},    {"SHORT DATE", "mm/dd/yyyy"}, {"SHORT TIME", "hh:nn"},
    {"LONG TIME", "hh:nn:ss"},
};

SqlValue Format(Arguments arguments) {
  if (IsNull(arguments[0])) return std::string();
  const std::string text = TextOf(arguments[0]);
  std::string picture = arguments.size() > 1 ? TextOf(arguments[1]) : std::string();
  for (const NamedPicture& named : kPictures) {
    if (UpperCase(picture) == named.name) picture = named.picture;
  }
  if (picture.empty()) return text;
  if (picture == ">") return UpperCase(text);
  if (picture == "<") return LCase(arguments);
  const bool forNumbers = picture.find_first_not_of("#0.,") == std::string::npos;
  if (forNumbers) return FormatByNumberPicture(NumberOf(arguments[0]), std::move(picture));
  const auto moment = MomentOf(text);
  return moment ? FormatByDatePicture(*moment, picture) : text;
}

constexpr SqlFunction kFunctions[] = {
    {"Left", 2, 2, Left},   {"Right", 2, 2, Right}, {"Mid", 2, 3, Mid}, {"UCase", 1, 1, UCase},
    {"LCase", 1, 1, LCase}, {"Len", 1, 1, Len},     {"Val", 1, 1, Val}, {"Str", 1, 1, Str},
    {"Int", 1, 1, Int},     {"IIf", 3, 3, IIf},     {"Nz", 1, 2, Nz},   {"Format", 1, 2, Format},
};

// ---- LIKE

/// One place of a pattern.
struct Place {
  enum class What { Any, One, Digit, List, Letter } what;
  std::string text{};  ///< of a list or a letter
};

/// "a-z" and single characters; a "!" in front turns it round.
bool IsOfList(char c, std::string_view list) {
  const bool others = list.starts_with('!');
  if (others) list.remove_prefix(1);
  bool found = false;
  for (std::size_t at = 0; at < list.size(); ++at) {
    if (at + 2 < list.size() && list[at + 1] == '-') {
      found = found || (Lower(list[at]) <= Lower(c) && Lower(c) <= Lower(list[at + 2]));
      at += 2;
    } else {
      found = found || Lower(list[at]) == Lower(c);
    }
  }
  return found != others;
}

std::vector<Place> PlacesOf(std::string_view pattern, std::string_view escape) {
  using What = Place::What;
  const bool ofDialect = pattern.find_first_of("*?#[") != std::string_view::npos;
  std::vector<Place> places;
  for (std::size_t at = 0; at < pattern.size(); ++at) {
    const char c = pattern[at];
    const std::size_t close = pattern.find(']', at);
    if (ofDialect && c == '[' && close != std::string_view::npos) {
      places.push_back({What::List, std::string(pattern.substr(at + 1, close - at - 1))});
      at = close;
    } else if (!ofDialect && !escape.empty() && c == escape.front() && at + 1 < pattern.size()) {
      places.push_back({What::Letter, {pattern[++at]}});
    } else if (c == (ofDialect ? '*' : '%')) {
      places.push_back({What::Any});
    } else if (c == (ofDialect ? '?' : '_')) {
      places.push_back({What::One});
    } else if (ofDialect && c == '#') {
      places.push_back({What::Digit});
    } else {
      places.push_back({What::Letter, {c}});
    }
  }
  return places;
}

bool Fits(char c, const Place& place) {
  switch (place.what) {
    case Place::What::Digit:
      return IsDigit(c);
    case Place::What::List:
      return IsOfList(c, place.text);
    case Place::What::Letter:
      return Lower(c) == Lower(place.text.front());
    case Place::What::Any:
    case Place::What::One:
      break;
  }
  return true;
}

}  // namespace

std::string RewriteStatement(std::string_view statement) {
  Tokens tokens = Cut(statement);
  for (const auto rule : kRules) rule(tokens);
  return Join(tokens);
}

std::span<const SqlFunction> SqlFunctions() { return kFunctions; }

/// The last "any characters" takes one more whenever the rest does not fit.
bool IsLike(std::string_view text, std::string_view pattern, std::string_view escape) {
  const std::vector<Place> places = PlacesOf(pattern, escape);
  std::size_t at = 0, place = 0, taken = 0;
  std::optional<std::size_t> any;
  while (at < text.size()) {
    if (place < places.size() && places[place].what == Place::What::Any) {
      any = place++;
      taken = at;
    } else if (place < places.size() && Fits(text[at], places[place])) {
      ++at;
      ++place;
    } else if (any) {
      place = *any + 1;
      at = ++taken;
    } else {
      return false;
    }
  }
  while (place < places.size() && places[place].what == Place::What::Any) ++place;
  return place == places.size();
}
