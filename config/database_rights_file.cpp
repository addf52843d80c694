#include "config/database_rights_file.h"

#include <algorithm>
#include <exception>
#include <string>
#include <string_view>

#include "config/cfg_text.h"
#include "core/database_path.h"
#include "core/tables.h"
#include "platform/files.h"
#include "protocol/number.h"

namespace {

constexpr std::string_view kFileName = "/Tarvex-Database.Cfg";

DatabaseRight RightOf(const Tables& tables, CfgReader& reader) {
  DatabaseRight right;
  right.ch = reader.Integer("channel", 1, kChannels) - 1;
  const std::string name = reader.Text("database");
  if (Trim(name).empty()) reader.Refuse(ErrorNumber::TypeMismatch, "database", "it is empty");
  right.path = FullDatabasePath(tables, name);
  const std::string access = UpperCase(Trim(reader.Text("right")));
  if (access != "READ" && access != "WRITE") {
    reader.Refuse(ErrorNumber::TypeMismatch, "right", "possible are \"read\" and \"write\"");
  }
  right.write = access == "WRITE";
  if (!reader.AtEnd()) {
    reader.Text("end of line");
    reader.Refuse(ErrorNumber::TypeMismatch, "end of line", "a line holds channel, database and right");
  }
  return right;
}

}  // namespace

void ReadDatabaseRights(Tables& tables, Files& files) {
  const std::string path = tables.ProgramFolder + std::string(kFileName);
  tables.DatabaseRights.clear();
  tables.DatabaseRightsSet = True;  // also where the file cannot be read: nobody knows what it forbids
  const std::string content = files.Read(path);
  tables.DatabaseRightsSet = AsBoolean(!Trim(content).empty());
  std::exception_ptr firstFault;
  std::string_view rest = content;
  for (int line = 1; !rest.empty(); ++line) {
    const std::size_t size = std::min(rest.find('\n'), rest.size() - 1) + 1;
    CfgReader reader(rest.substr(0, rest.find_first_of("\r\n")), path, line);
    try {
      if (!reader.AtEnd()) tables.DatabaseRights.push_back(RightOf(tables, reader));
    } catch (const RunTimeError&) {
      if (!firstFault) firstFault = std::current_exception();
    }
    rest.remove_prefix(size);
  }
  if (firstFault) std::rethrow_exception(firstFault);
}
