#pragma once

struct Tables;

/// An action changes a database and has no result; everything else selects records.
enum class StatementKind { Action, Selecting };

/// Classifies the statement in `ChanDbQuery` by plain searches for seven keywords, whose places go to
/// `ChanDbKeywordPos`, with no regard to words or quotes: those are the rules that terminals' programs are written for.
/// `ChanDbInText` becomes what stands from "IN " to "WHERE", the keyword and the blank included. Raises 5 if "IN "
/// stands behind "WHERE", as in a list test.
StatementKind ClassifyStatement(Tables& tables, int ch);

/// Whether the statement has the adjacent pair "SELECT INTO".
bool CreatesDatabase(const Tables& tables, int ch);
