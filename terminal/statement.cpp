#include "terminal/statement.h"

#include <string>

#include "core/tables.h"
#include "protocol/number.h"

namespace {

enum Keyword { SelectInto, Insert, Into, Update, Delete, In, Where };

constexpr const char* kKeywords[kDbKeywords] = {"SELECT INTO", "INSERT", "INTO", "UPDATE", "DELETE", "IN ", "WHERE"};

}  // namespace

StatementKind ClassifyStatement(Tables& tables, int ch) {
  const std::string& query = tables.ChanDbQuery[ch];
  const std::string upper = UpperCase(query);
  auto& position = tables.ChanDbKeywordPos[ch];
  for (int keyword = 0; keyword < kDbKeywords; ++keyword) {
    const std::size_t found = upper.find(kKeywords[keyword]);
    position[keyword] = found == std::string::npos ? 0 : static_cast<std::int32_t>(found) + 1;
  }
  if (position[Insert] == 0) position[Into] = 0;
  tables.ChanDbInText[ch].clear();
  if (position[In] != 0 && position[Where] != 0) {
    if (position[Where] < position[In]) {
      throw RunTimeError(ErrorNumber::InvalidCall,
                         "Invalid procedure call: \"IN \" stands behind \"WHERE\" in " + query);
    }
    tables.ChanDbInText[ch] = query.substr(static_cast<std::size_t>(position[In] - 1),
                                           static_cast<std::size_t>(position[Where] - position[In]));
  }
  for (const Keyword action : {SelectInto, Insert, Into, Update, Delete}) {
    if (position[action] != 0) return StatementKind::Action;
  }
  return StatementKind::Selecting;
}

bool CreatesDatabase(const Tables& tables, int ch) { return tables.ChanDbKeywordPos[ch][SelectInto] != 0; }
