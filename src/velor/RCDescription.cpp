#include "RCDescription.h"

#include <cstdio>
#include <cstring>

#include "DataArea.h"

void writeChar(DataArea* area, char c) { area->PutChar(c); }

void writeBlanks(DataArea* area, int count) {
    for (int i = 0; i < count; ++i) writeChar(area, ' ');
}

void writeText(DataArea* area, char const* text) { area->Write(text, std::strlen(text)); }

void newLine(DataArea* area) { writeChar(area, '\n'); }

void newLineIndent(DataArea* area, int indent) {
    newLine(area);
    writeBlanks(area, indent);
}

void writeNumber(DataArea* area, RCNumber const& number) {
    char text[64];
    if (number.IsInteger())
        std::snprintf(text, sizeof text, "%lu", static_cast<unsigned long>(number.AsInteger()));
    else
        std::snprintf(text, sizeof text, "%g", number.AsDouble());
    writeText(area, text);
}

void writeNumber(DataArea* area, long number) { writeNumber(area, RCNumber(number)); }

void writeString(DataArea* area, char const* text) { writeString(area, text, std::strlen(text)); }

void writeString(DataArea* area, char const* bytes, unsigned long length) {
    writeChar(area, '"');
    for (unsigned long i = 0; i < length; ++i) {
        unsigned char c = static_cast<unsigned char>(bytes[i]);
        if (c == '\t') {
            writeText(area, "\\t");
        } else if (c == '\n') {
            writeText(area, "\\n");
        } else if (c == '\\') {
            writeText(area, "\\\\");
        } else if (c >= 0x20 && c < 0x7F) {
            writeChar(area, static_cast<char>(c));
        } else {
            char octal[8];
            std::snprintf(octal, sizeof octal, "\\%03o", c);
            writeText(area, octal);
        }
    }
    writeChar(area, '"');
}
