// The process entry of velor-walk.
#include "WalkTool.h"

int main(int argc, char** argv) { return WalkToolMain(argc, argv); }
