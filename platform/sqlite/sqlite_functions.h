#pragma once

struct sqlite3;

/// Gives a connection the functions of the clients' dialect and its way of LIKE.
void RegisterFunctions(sqlite3* database);
