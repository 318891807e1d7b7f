// RCPredefinedTypes: the resource types that every compilation knows before it reads a token.
// Their bodies are payload statements, not declarations of the language: a bitmap converter, a
// multi-string table, and plain byte strings for the files that go in as they are.
#pragma once

class RCSymbolTable;

// Enters BITMAP, PNGA, PNGR, PNGAD, PNGRD, PNGC, ICNS and MULTISTRING, in that order, ahead of
// every type that the source declares.
void EnterPredefinedTypes(RCSymbolTable* symbolTable);
