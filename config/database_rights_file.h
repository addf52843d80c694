#pragma once

class Files;
struct Tables;

/// Reads `Tarvex-Database.Cfg`: which channel may read or write which database. One line a right: channel number, path
/// (looked for in the program's folder if it is relative), "read" or "write". Without the file every channel may use
/// every database. A damaged line gives no right, which is raised when all lines have been read.
void ReadDatabaseRights(Tables& tables, Files& files);
