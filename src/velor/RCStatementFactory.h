// Which keyword opens which statement of a type body. The one place that knows every statement
// class: each kind adds one row to the table in the source, and the parsers of lists and bodies
// reach all of them through ParserForKeyword alone.
#pragma once

class RCScanner;
class RCStatement;

// Parses one statement from its opening keyword on: a new statement, or null after an error was
// reported.
using RCStatementParser = RCStatement* (*)(RCScanner*);

// The parser of the statement that `token` opens, or null if no statement starts with it.
RCStatementParser ParserForKeyword(int token);
