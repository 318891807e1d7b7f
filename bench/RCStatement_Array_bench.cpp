// Laying out arrays: the time per element should stay flat as an array grows, with a label in
// every element, a count and a subscripted label read back from fixups, and a switch per element.
#include <cstdio>
#include <string>

#include "CompileTiming.h"
#include "Options.h"

namespace {

double NanosecondsPerElement(long count) {
    std::string text =
        "type Table('TABL') {\n"
        "    longint = $$CountOf(Rows);\n"
        "    longint = start[" + std::to_string(count) + "];\n"
        "    array Rows {\n"
        "        start: integer;\n"
        "        switch { case small: byte; case big: longint; };;\n"
        "        fill nibble; align byte;\n"
        "    };\n"
        "};\n"
        "resource Table (1) { {";
    for (long i = 0; i < count; ++i) text += i % 2 ? " 7, big { 70000 };;" : " 5, small { 9 };;";
    return CompileNanoseconds(text + " } };\n") / static_cast<double>(count);
}

}  // namespace

int main() {
    Options options;
    gOptions = &options;
    for (long count : {1000L, 10000L, 100000L})
        std::printf("%6ld elements: %8.1f ns per array element\n", count, NanosecondsPerElement(count));
    return 0;
}
