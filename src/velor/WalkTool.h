// velor-walk: reads back what a compilation left in an output folder. With the folder alone it
// lists the resources; with a type and an id it finds that resource's two descriptions and has
// RCDescWalker list its bytes field by field. The command adds only the framing (which resource,
// which files); the listing itself is the walker's.
#pragma once

// Runs the command on its arguments and answers the exit code: 0 done, 1 a failure that a
// message names, 2 a wrong command line.
int WalkToolMain(int argc, char** argv);
