#pragma once

#include <string>

struct Tables;

/// A database as channel `ch` may use it.
struct DatabaseFile {
  std::string path;
  bool readOnly;
};

/// Full paths of the database `name`, which is looked for in the program's folder if it is relative. Raise 3051 if the
/// file of rights does not let the channel read or write it.
DatabaseFile DatabaseToRead(const Tables& tables, int ch, const std::string& name);
std::string DatabaseToWrite(const Tables& tables, int ch, const std::string& name);
