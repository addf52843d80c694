#include "config/database_rights_file.h"

#include <string>
#include <string_view>

#include "config/cfg_lines.h"
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
  tables.DatabaseRightsSet = AsBoolean(files.Exists(path));  // one that a full disk has cut to nothing allows nothing
  EachCfgLine(content, path, [&](CfgReader& reader) { tables.DatabaseRights.push_back(RightOf(tables, reader)); });
}
