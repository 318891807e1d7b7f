// The default byte operations of the stream interfaces, the memory buffers and the data-area
// adapter. The buffers clamp every transfer to the bytes that are there and say so in the result.
#include "Streams.h"

#include <cstring>

#include "Assertion.h"

namespace {

// Lets a caller pass no count; the count then lands in a local.
class CountOut {
public:
    explicit CountOut(unsigned long* actual) : fActual(actual != nullptr ? actual : &fLocal) {}
    void Set(unsigned long count) { *fActual = count; }

private:
    unsigned long fLocal = 0;
    unsigned long* fActual;
};

}  // namespace

int ARead::GetChar() {
    unsigned char byte = 0;
    return Read(&byte, 1, nullptr) == 0 ? byte : -1;
}

int AWrite::PutChar(int c) {
    unsigned char byte = static_cast<unsigned char>(c);
    return Write(&byte, 1, nullptr) == 0 ? byte : -1;
}

void SBuffer::SetCursor(unsigned long offset) {
    VELOR_ASSERT_TEXT("fCursor <= fBufferLimit", offset <= GetSize());
    fCursor = fBuffer + offset;
}

int SBuffer::AdvanceCursor(unsigned long& n) {
    int result = 0;
    if (n > BytesLeft()) {
        n = BytesLeft();
        result = kStreamEndOfData;
    }
    fCursor += n;
    return result;
}

// At the limit itself there is no byte left to give, so the end shows there, and the cursor never
// passes the limit for a later Read to count back from.
int RSBuffer::GetChar() {
    if (BytesLeft() == 0) return -1;
    return static_cast<unsigned char>(*fCursor++);
}

int RSBuffer::Read(void* bytes, unsigned long count, unsigned long* actual) {
    char const* from = fCursor;
    int result = AdvanceCursor(count);
    if (count != 0) std::memcpy(bytes, from, count);
    CountOut(actual).Set(count);
    return result;
}

int RWSBuffer::PutChar(int c) {
    if (BytesLeft() == 0) return -1;
    *fCursor++ = static_cast<char>(c);
    return static_cast<unsigned char>(c);
}

int RWSBuffer::Write(void const* bytes, unsigned long count, unsigned long* actual) {
    char* to = fCursor;
    int result = AdvanceCursor(count);
    if (count != 0) std::memcpy(to, bytes, count);
    CountOut(actual).Set(count);
    return result;
}

int CFile_DataArea::Read(void* bytes, unsigned long count, unsigned long* actual) {
    CountOut(actual).Set(fArea.Read(bytes, count));
    return 0;
}

int CFile_DataArea::Write(void const* bytes, unsigned long count, unsigned long* actual) {
    unsigned long taken = fArea.Write(bytes, count);
    CountOut(actual).Set(taken);
    return taken < count ? kStreamOutOfMemory : 0;
}
