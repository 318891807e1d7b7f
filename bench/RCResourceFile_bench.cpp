// Collecting resources: the time per AddResource and per Lookup should stay flat as the number
// of resources in the file grows.
#include <chrono>
#include <cstdio>
#include <cstdlib>

#include "RCResourceFile.h"

namespace {

constexpr unsigned long kFirstType = 0x54455854;  // 'TEXT'

// Each type holds 65536 ids, so the n-th resource goes to type n / 65536 with id n % 65536.
unsigned long TypeOf(long n) { return kFirstType + static_cast<unsigned long>(n >> 16); }

double NanosecondsPerResource(long count) {
    using Clock = std::chrono::steady_clock;
    RCResourceFile file("bench/r.rsrc");
    auto start = Clock::now();
    for (long i = 0; i < count; ++i) {
        auto* resource = new RCResource(TypeOf(i), static_cast<short>(i));
        resource->AddContents("", 0);
        file.AddResource(resource);
        if (file.Lookup(TypeOf(i / 2), static_cast<short>(i / 2)) == nullptr) std::abort();
    }
    std::chrono::duration<double, std::nano> elapsed = Clock::now() - start;
    return elapsed.count() / static_cast<double>(count);
}

}  // namespace

int main() {
    for (long count : {1000L, 10000L, 100000L, 1000000L})
        std::printf("%8ld resources: %7.1f ns per resource\n", count, NanosecondsPerResource(count));
    return 0;
}
