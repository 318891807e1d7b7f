// Compiling `type` and `resource` statements: the time per resource statement should stay flat as
// a file holds more of them, the time per field as a type grows, the time per term of one field
// value that is a flat chain of operators, the time per byte as a string value grows out of more
// adjacent literals, and the time per entry as a multi-string table grows. Descriptions switched
// off must cost nothing: the time per resource statement without them is that of a compiler that
// has none.
#include <cstdio>
#include <string>

#include "CompileTiming.h"
#include "Options.h"

namespace {

double NanosecondsPerResource(long count, bool descriptions) {
    gOptions->SetWriteDescriptions(descriptions);
    std::string text = "type Rec('BNCH') { bitstring[4]; bitstring[4]; integer; byte a, b, c = 10; boolean; };\n";
    for (long id = 0; id < count; ++id)
        text += "resource Rec (" + std::to_string(id - 32768) + ") { 10; 5; 0x1234; c; 1 };\n";
    double perResource = CompileNanoseconds(text) / static_cast<double>(count);
    gOptions->SetWriteDescriptions(false);
    return perResource;
}

// One table whose ids run backwards, so that sorting has all the work to do.
double NanosecondsPerEntry(long count) {
    std::string text = "resource MULTISTRING (1) {";
    for (long i = count; i > 0; --i) {
        text += ' ';
        text += std::to_string(i);
        text += ", \"s\";";
    }
    return CompileNanoseconds(text + " };\n") / static_cast<double>(count);
}

double NanosecondsPerField(long count) {
    std::string type = "type Wide('WIDE') {";
    std::string values = "resource Wide (1) {";
    for (long i = 0; i < count; ++i) {
        type += i % 2 ? " byte;" : " bitstring[3];";
        values += ' ';
        values += std::to_string(i % 8);
        values += ';';
    }
    return CompileNanoseconds(type + " };\n" + values + " };\n") / static_cast<double>(count);
}

double NanosecondsPerChainTerm(long count) {
    std::string type = "type Sum('SUMS') { longint = 1";
    std::string values = "resource Sum (1) { 2";
    for (long i = 1; i < count; ++i) {
        type += i % 2 ? " + 1" : " * 1";
        values += i % 2 ? " - 2" : " << 0";
    }
    return CompileNanoseconds(type + "; longint; };\n" + values + " };\n") / static_cast<double>(count);
}

double NanosecondsPerStringByte(long literals) {
    std::string const literal = " \"" + std::string(62, 'x') + "\"";
    std::string text = "type Text('TEXT') { cstring; };\nresource Text (1) {";
    for (long i = 0; i < literals; ++i) text += literal;
    return CompileNanoseconds(text + " };\n") / static_cast<double>(literals * 62);
}

}  // namespace

int main() {
    Options options;
    gOptions = &options;
    for (long count : {1000L, 10000L, 60000L})
        std::printf("%6ld resources: %8.1f ns per resource statement without descriptions, %8.1f with\n", count,
                    NanosecondsPerResource(count, false), NanosecondsPerResource(count, true));
    for (long count : {1000L, 10000L, 100000L})
        std::printf("%6ld fields:    %8.1f ns per field of one type and its resource\n", count,
                    NanosecondsPerField(count));
    for (long count : {1000L, 10000L, 100000L, 1000000L})
        std::printf("%7ld terms:  %8.1f ns per term of a flat chain in a field\n", count, NanosecondsPerChainTerm(count));
    for (long count : {100L, 1000L, 10000L})
        std::printf("%6ld literals:  %8.1f ns per byte of one string value\n", count, NanosecondsPerStringByte(count));
    for (long count : {1000L, 5000L, 10000L})
        std::printf("%6ld entries:   %8.1f ns per entry of one multi-string table\n", count, NanosecondsPerEntry(count));
    return 0;
}
