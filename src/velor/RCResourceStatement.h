// The `resource` statement, entered through RCDefinition::DoResource (defined in the source of this
// unit): a head that names the type, the id, the options and the name, then one instance of the
// type compiled into its own RCBindings and handed to the resource file.
#pragma once

#include "RCByteString.h"

class RCResourceFile;
class RCScanner;
struct UniqueStruct;

// resource-head = ( type-name | number ) "(" id { ( "," | "|" ) option } [ [ "," | "|" ] string ] ")"
struct RCResourceHead {
    UniqueStruct* typeName = nullptr;
    short id = 0;
    unsigned long flags = 0;
    RCByteStringOwner name;
};

// Reads the head behind `resource`. False after an error was reported.
bool ParseResourceHead(RCScanner* scanner, RCResourceHead& head);
// resource-body = "{" values "}" | string ";"
// Compiles the instance that follows the head and adds it to the file. False when nothing could
// be compiled; a duplicate is only warned of.
bool CompileResource(RCScanner* scanner, RCResourceFile* resourceFile, RCResourceHead const& head);
