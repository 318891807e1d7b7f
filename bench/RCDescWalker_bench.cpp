// Walking a resource back: the time per field should stay flat as an array grows, since each text
// is scanned once in step with the bytes. The listing goes to /dev/null.
#include <chrono>
#include <cstdio>
#include <string>
#include <vector>

#include "RCDescWalker.h"

namespace {

double NanosecondsPerField(long count) {
    std::string type = "(type T (prog (array (name a) (prog (bitstring 8)))))";
    std::string instance = "(type T (prog (array";
    for (long i = 0; i < count; ++i) instance += "\n      (prog (bitstring 8))";
    instance += ")))";
    std::vector<unsigned char> data(static_cast<size_t>(count), 0x5A);
    using Clock = std::chrono::steady_clock;
    auto start = Clock::now();
    RCDescWalker(data.data(), data.size(), instance.c_str(), type.c_str()).Walk();
    std::chrono::duration<double, std::nano> elapsed = Clock::now() - start;
    return elapsed.count() / static_cast<double>(count);
}

}  // namespace

int main() {
    if (std::freopen("/dev/null", "w", stdout) == nullptr) return 1;
    for (long count : {1000L, 10000L, 100000L, 1000000L})
        std::fprintf(stderr, "%8ld fields: %7.1f ns per field\n", count, NanosecondsPerField(count));
    return 0;
}
