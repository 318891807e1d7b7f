// Reads and writes pass the count through the fork's in-out count and hand it back.
#include "CFile_MacFile.h"

int CFile_MacFile::Read(void* bytes, unsigned long count, unsigned long* actual) {
    int result = fFile.ReadData(bytes, count);
    if (actual != nullptr) *actual = count;
    return result;
}

int CFile_MacFile::Write(void const* bytes, unsigned long count, unsigned long* actual) {
    int result = fFile.WriteData(bytes, count);
    if (actual != nullptr) *actual = count;
    return result;
}
