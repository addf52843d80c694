#include "terminal/sql_dialect.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <utility>

#include "protocol/number.h"

namespace {

constexpr std::size_t kNone = std::string_view::npos;
constexpr std::size_t kLongestDate = 40;

enum class Kind { Word, Number, Quoted, Date, Sign };

struct Token {
  Kind kind;
  std::string_view gap;  ///< blanks and comments in front of it
  std::string_view text;
  std::string upper = {};                       ///< of a word
  std::size_t partner = kNone;                  ///< ( and ), CASE and END
  std::string before = {};                      ///< what a rule puts in front of it
  std::optional<std::string> replacement = {};  ///< what stands in its place
  std::string after = {};                       ///< what a rule puts behind it
};

bool IsDigit(char character) { return character >= '0' && character <= '9'; }
bool IsBlank(char character) { return character == ' ' || (character >= '\t' && character <= '\r'); }
bool IsWordStart(char character) {
  return (character >= 'a' && character <= 'z') || (character >= 'A' && character <= 'Z') || character == '_' ||
         static_cast<unsigned char>(character) >= 0x80;
}
bool IsWordPart(char character) { return IsWordStart(character) || IsDigit(character) || character == '$'; }

/// Cuts a statement into tokens, each with what stands between it and the one in front.
class Tokenizer {
 public:
  explicit Tokenizer(std::string_view statement) : statement_(statement) {}

  bool Next(Token& token) {
    token.gap = Cut(EndOfGap());
    if (at_ == statement_.size()) return false;
    const char first = statement_[at_];
    std::size_t end = at_ + 1;
    token.kind = Kind::Sign;
    if (first == '\'' || first == '"' || first == '`' || first == '[') {
      token.kind = Kind::Quoted;
      end = EndOfQuoted(at_);
    } else if ((first == 'x' || first == 'X') && end < statement_.size() && statement_[end] == '\'') {
      token.kind = Kind::Quoted;  // bytes in hexadecimal digits
      end = EndOfQuoted(end);
    } else if (IsWordStart(first)) {
      token.kind = Kind::Word;
      end = EndWhile(IsWordPart);
    } else if (IsDigit(first) || (first == '.' && end < statement_.size() && IsDigit(statement_[end]))) {
      token.kind = Kind::Number;
      end = EndOfNumber();
    } else if (first == '#') {
      end = EndOfDate(token);
    } else if (end < statement_.size() && IsPair(statement_.substr(at_, 2))) {
      ++end;
    }
    token.text = Cut(end);
    if (token.kind == Kind::Word) token.upper = UpperCase(token.text);
    return true;
  }

 private:
  static bool IsPair(std::string_view signs) {
    constexpr std::array<std::string_view, 8> kPairs = {"||", "<=", "<>", ">=", "==", "!=", "<<", ">>"};
    return std::find(kPairs.begin(), kPairs.end(), signs) != kPairs.end();
  }

  std::string_view Cut(std::size_t end) {
    const std::string_view part = statement_.substr(at_, end - at_);
    at_ = end;
    return part;
  }

  std::size_t EndWhile(bool (*belongs)(char)) const {
    std::size_t end = at_;
    while (end < statement_.size() && belongs(statement_[end])) ++end;
    return end;
  }

  std::size_t EndOfGap() const {
    std::size_t end = at_;
    while (end < statement_.size()) {
      const std::string_view rest = statement_.substr(end);
      if (IsBlank(rest[0])) {
        ++end;
      } else if (rest.starts_with("--")) {
        end = std::min(statement_.find('\n', end), statement_.size());
      } else if (rest.starts_with("/*")) {
        const std::size_t close = statement_.find("*/", end + 2);
        end = close == kNone ? statement_.size() : close + 2;
      } else {
        break;
      }
    }
    return end;
  }

  /// A quote written twice is a part of the text; a bracket ends with the first one that closes.
  std::size_t EndOfQuoted(std::size_t open) const {
    const bool bracket = statement_[open] == '[';
    const char close = bracket ? ']' : statement_[open];
    for (std::size_t at = open + 1; at < statement_.size(); ++at) {
      if (statement_[at] != close) continue;
      if (bracket || at + 1 == statement_.size() || statement_[at + 1] != close) return at + 1;
      ++at;
    }
    return statement_.size();
  }

  std::size_t EndOfNumber() const {
    std::size_t end = at_;
    while (end < statement_.size()) {
      const char character = statement_[end];
      const bool sign = (character == '+' || character == '-') && (statement_[end - 1] | 0x20) == 'e' &&
                        end > at_ + 1 && end + 1 < statement_.size() && IsDigit(statement_[end + 1]);
      if (!IsWordPart(character) && character != '.' && !sign) break;
      ++end;
    }
    return end;
  }

  std::size_t EndOfDate(Token& token) const {
    const std::size_t close = statement_.substr(at_, kLongestDate).find('#', 1);
    if (close == kNone) return at_ + 1;
    const std::optional<std::string> date = SqlDateText(statement_.substr(at_ + 1, close - 1));
    if (!date) return at_ + 1;
    token.kind = Kind::Date;
    token.replacement = "'" + *date + "'";
    return at_ + close + 1;
  }

  std::string_view statement_;
  std::size_t at_ = 0;
};

/// A statement under the rules.
class Statement {
 public:
  explicit Statement(std::string_view text) {
    Tokenizer tokenizer(text);
    std::vector<std::size_t> open;
    Token token{};
    while (tokenizer.Next(token)) {
      const std::size_t at = tokens_.size();
      tokens_.push_back(std::exchange(token, Token{}));
      if (IsSign(at, "(") || IsWord(at, "CASE")) {
        open.push_back(at);
      } else if (IsSign(at, ")") || IsWord(at, "END")) {
        if (open.empty() || IsSign(at, ")") != IsSign(open.back(), "(")) continue;
        tokens_[at].partner = open.back();
        tokens_[open.back()].partner = at;
        open.pop_back();
      }
    }
    end_ = token.gap;
  }

  std::size_t Size() const { return tokens_.size(); }
  Token& operator[](std::size_t at) { return tokens_[at]; }
  /// False for places that are none, so that rules may look beside the ends.
  bool IsWord(std::size_t at, std::string_view upper) const {
    return at < tokens_.size() && tokens_[at].kind == Kind::Word && tokens_[at].upper == upper;
  }
  bool IsSign(std::size_t at, std::string_view sign) const {
    return at < tokens_.size() && tokens_[at].kind == Kind::Sign && tokens_[at].text == sign;
  }
  template <std::size_t count>
  bool IsOneOf(std::size_t at, const std::array<std::string_view, count>& words) const {
    if (at >= tokens_.size() || tokens_[at].kind == Kind::Quoted) return false;
    const std::string_view text = tokens_[at].kind == Kind::Word ? tokens_[at].upper : tokens_[at].text;
    return std::find(words.begin(), words.end(), text) != words.end();
  }
  bool IsKind(std::size_t at, Kind kind) const { return at < tokens_.size() && tokens_[at].kind == kind; }
  bool IsName(std::size_t at) const { return IsKind(at, Kind::Word) || IsKind(at, Kind::Quoted); }
  bool IsTakenOut(std::size_t at) const { return at < tokens_.size() && tokens_[at].replacement == ""; }
  void TakeOut(std::size_t at) { tokens_[at].replacement = ""; }

  std::string Text() const {
    std::string text;
    for (const Token& token : tokens_) {
      text.append(token.gap).append(token.before);
      text.append(token.replacement ? std::string_view(*token.replacement) : token.text).append(token.after);
    }
    return text.append(end_);
  }

 private:
  std::vector<Token> tokens_;
  std::string_view end_;
};

constexpr std::array<std::string_view, 3> kCompounds = {"UNION", "EXCEPT", "INTERSECT"};
constexpr std::array<std::string_view, 6> kArithmetic = {"+", "-", "*", "/", "%", "||"};
/// Words that are no operand and no name of a function.
constexpr std::array<std::string_view, 37> kKeywords = {
    "SELECT", "DISTINCT",  "ALL",    "FROM",      "WHERE", "GROUP", "ORDER", "BY",   "HAVING", "LIMIT",
    "OFFSET", "UNION",     "EXCEPT", "INTERSECT", "JOIN",  "ON",    "USING", "AS",   "INTO",   "VALUES",
    "SET",    "RETURNING", "AND",    "OR",        "NOT",   "IN",    "IS",    "LIKE", "GLOB",   "BETWEEN",
    "ESCAPE", "COLLATE",   "CASE",   "WHEN",      "THEN",  "ELSE",  "TOP"};

void TakeTruthWords(Statement& statement) {
  for (std::size_t at = 0; at < statement.Size(); ++at) {
    const bool yes = statement.IsWord(at, "TRUE");
    if (!yes && !statement.IsWord(at, "FALSE")) continue;
    // a field of that name, a name that is given, and the test IS [NOT] TRUE, which the engine has
    if (statement.IsSign(at - 1, ".") || statement.IsSign(at + 1, ".") || statement.IsSign(at + 1, "(")) continue;
    if (statement.IsWord(at - 1, "AS") || statement.IsWord(at - 1, "IS")) continue;
    if (statement.IsWord(at - 1, "NOT") && statement.IsWord(at - 2, "IS")) continue;
    statement[at].replacement = yes ? "(-1)" : "0";  // in brackets, since -- would begin a comment
  }
}

/// Left and Right are words of joins to the engine; as names in brackets they are functions.
void TakeFunctionNames(Statement& statement) {
  for (std::size_t at = 0; at < statement.Size(); ++at) {
    if (!statement.IsKind(at, Kind::Word) || !statement.IsSign(at + 1, "(")) continue;
    std::string_view name = statement[at].text;
    std::string_view upper = statement[at].upper;
    const bool textForm = upper.ends_with('$');
    if (textForm) {
      name.remove_suffix(1);
      upper.remove_suffix(1);
    }
    if (upper == "LEFT" || upper == "RIGHT") {
      statement[at].replacement = "[" + std::string(name) + "]";
    } else if (textForm) {
      statement[at].replacement = std::string(name);
    }
  }
}

void TakeDeleteAll(Statement& statement) {
  if (statement.IsWord(0, "DELETE") && statement.IsSign(1, "*") && statement.IsWord(2, "FROM")) statement.TakeOut(1);
}

/// The first token of the operand that ends with `last`; kNone if none ends there.
std::size_t OperandStart(Statement& statement, std::size_t last) {
  std::size_t at = last;
  if (statement.IsSign(at, ")") || statement.IsWord(at, "END")) {
    at = statement[at].partner;
    if (at == kNone) return kNone;
    const bool call = statement.IsSign(at, "(") && statement.IsName(at - 1) && !statement.IsOneOf(at - 1, kKeywords);
    if (call) --at;
  } else if (at >= statement.Size() || statement.IsKind(at, Kind::Sign) || statement.IsTakenOut(at) ||
             statement.IsOneOf(at, kKeywords)) {
    return kNone;
  }
  while (statement.IsName(at) && statement.IsSign(at - 1, ".") && statement.IsName(at - 2)) at -= 2;
  return at;
}

/// The last token of the operand that begins with `first`; kNone if none begins there.
std::size_t OperandEnd(Statement& statement, std::size_t first) {
  std::size_t at = first;
  if (statement.IsSign(at, "(") || statement.IsWord(at, "CASE")) return statement[at].partner;
  if (at >= statement.Size() || statement.IsKind(at, Kind::Sign) || statement.IsOneOf(at, kKeywords)) return kNone;
  if (!statement.IsName(at)) return at;
  while (statement.IsSign(at + 1, ".") && statement.IsName(at + 2)) at += 2;
  return statement.IsSign(at + 1, "(") ? statement[at + 1].partner : at;
}

/// First token of the sum or product that ends with `last`: what binds closer than &.
std::size_t TermStart(Statement& statement, std::size_t last) {
  std::size_t at = OperandStart(statement, last);
  while (at != kNone && statement.IsOneOf(at - 1, kArithmetic)) {
    const std::size_t before = OperandStart(statement, at - 2);
    if (before == kNone) return at - 1;  // a sign
    at = before;
  }
  return at;
}

std::size_t TermEnd(Statement& statement, std::size_t first) {
  for (std::size_t at = first;;) {
    while (statement.IsSign(at, "-") || statement.IsSign(at, "+")) ++at;
    const std::size_t end = OperandEnd(statement, at);
    if (end == kNone || !statement.IsOneOf(end + 1, kArithmetic)) return end;
    at = end + 2;
  }
}

void TakeJoins(Statement& statement) {
  for (std::size_t at = 0; at < statement.Size(); ++at) {
    if (!statement.IsSign(at, "&") || statement[at].replacement) continue;
    const std::size_t start = TermStart(statement, at - 1);
    std::size_t end = start == kNone ? kNone : TermEnd(statement, at + 1);
    if (end == kNone) {
      statement[at].replacement = "||";  // never the engine's own &, which would reckon with bits
      continue;
    }
    statement[at].replacement = ",";
    while (statement.IsSign(end + 1, "&")) {
      const std::size_t next = TermEnd(statement, end + 2);
      if (next == kNone) break;
      statement[end + 1].replacement = ",";
      end = next;
    }
    statement[start].before += "tarvex_join(";
    statement[end].after.insert(0, ")");  // in front of a LIMIT
  }
}

void TakeTop(Statement& statement) {
  for (std::size_t select = 0; select < statement.Size(); ++select) {
    if (!statement.IsWord(select, "SELECT")) continue;
    const bool word = statement.IsWord(select + 1, "DISTINCT") || statement.IsWord(select + 1, "ALL");
    const std::size_t top = select + (word ? 2 : 1);
    if (!statement.IsWord(top, "TOP") || !statement.IsKind(top + 1, Kind::Number)) continue;
    const std::string_view count = statement[top + 1].text;
    if (!std::all_of(count.begin(), count.end(), IsDigit) || statement.IsWord(top + 2, "PERCENT")) continue;

    std::size_t order = kNone;
    std::size_t end = top + 2;
    for (; end < statement.Size(); ++end) {
      if (statement.IsSign(end, ")") || statement.IsSign(end, ";") || statement.IsWord(end, "SELECT")) break;
      if (statement.IsOneOf(end, kCompounds)) break;
      if (statement.IsWord(end, "ORDER") && order == kNone) order = end;
      if (statement.IsSign(end, "(") && statement[end].partner != kNone) end = statement[end].partner;
    }
    // A part of a compound cannot have a LIMIT of its own but in brackets; the order is that of the whole.
    const bool compound = statement.IsOneOf(end, kCompounds) || statement.IsOneOf(select - 1, kCompounds) ||
                          (statement.IsWord(select - 1, "ALL") && statement.IsOneOf(select - 2, kCompounds));
    if (compound) {
      end = std::min(end, order);
      statement[select].before += "SELECT * FROM (";
    }
    statement.TakeOut(top);
    statement.TakeOut(top + 1);
    statement[end - 1].after += " LIMIT " + std::string(count) + (compound ? ")" : "");
  }
}

void TakeSelectInto(Statement& statement) {
  if (!statement.IsWord(0, "SELECT")) return;
  for (std::size_t at = 1; at < statement.Size() && !statement.IsWord(at, "FROM"); ++at) {
    if (statement.IsSign(at, "(") && statement[at].partner != kNone) at = statement[at].partner;
    if (!statement.IsWord(at, "INTO") || !statement.IsName(at + 1)) continue;
    if (at + 2 < statement.Size() && !statement.IsWord(at + 2, "FROM") && !statement.IsSign(at + 2, ";")) return;
    statement[0].before = "CREATE TABLE " + std::string(statement[at + 1].text) + " AS " + statement[0].before;
    statement.TakeOut(at);
    statement.TakeOut(at + 1);
    return;
  }
}

/// The quotient of two whole numbers is no whole number.
void TakeDivisions(Statement& statement) {
  for (std::size_t at = 0; at < statement.Size(); ++at) {
    if (statement.IsSign(at, "/")) statement[at].replacement = "*1.0/";
  }
}

/// In this order: later rules see what earlier ones have taken out. Dates are taken by the tokenizer.
constexpr void (*kRules[])(Statement&) = {TakeTruthWords, TakeFunctionNames, TakeDeleteAll, TakeTop,
                                          TakeJoins,      TakeSelectInto,    TakeDivisions};

}  // namespace

std::string TranslateSql(std::string_view text) {
  Statement statement(text);
  for (const auto rule : kRules) rule(statement);
  return statement.Text();
}
