// The top level of a description file: the loop that hands each statement to its parser until the
// input ends. The driver and the tests run files through this one loop.
#pragma once

class PP_CMacroTable;
class RCResourceFile;
class RCScanner;

// Runs before each top-level statement; the driver's stops the run once an error was counted.
using RCCheckPoint = void (*)();

// file = { statement } EOF
// statement = "type" definition | "resource" resource | ";" | named-numbers
// On entry the scanner stands on the file's first token; resources go to resourceFile, and the
// names of enum and const lines to macroTable. Any other token is reported and skipped up to the
// next ';'.
void CompileTopLevel(RCScanner* scanner, PP_CMacroTable* macroTable, RCResourceFile* resourceFile,
                     RCCheckPoint checkPoint);
