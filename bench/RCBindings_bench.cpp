// Laying out one resource: the time per field should stay flat as the resource grows, for plain
// fields in both bit regimes and for deferred fields patched when the frame is popped.
#include <chrono>
#include <cstdio>
#include <cstdlib>

#include "RCBindings.h"
#include "RCExpression.h"
#include "RCScanner.h"
#include "RCSymTbl.h"

namespace {

using Clock = std::chrono::steady_clock;

// $$Word(position): a deferred field that reads the output at the end of the type instance.
RCExpression* wordAt(long position) {
    RCExpression* argv[] = {RCExpression::Number(position)};
    return new RCExpression_Function(kRCScan_FnWord - kRCScan_FnArrayIndex, 1, argv);
}

double NanosecondsPerField(long count, bool deferred) {
    RCSymbolTable symbols;
    RCBindings bindings(&symbols, nullptr, 0, 0);
    auto start = Clock::now();
    bindings.PushDefn(nullptr);
    for (long i = 0; i < count; ++i) {
        bool laid = deferred ? bindings.AddValue(nullptr, RCPtr<RCExpression>(wordAt(i)), 16, true)
                             : bindings.AddValue(nullptr, RCNumber(i), static_cast<short>(i % 3 == 0 ? 16 : 5), true);
        if (!laid) std::abort();
    }
    bindings.PopDefn(nullptr);
    std::chrono::duration<double, std::nano> elapsed = Clock::now() - start;
    return elapsed.count() / static_cast<double>(count);
}

}  // namespace

int main() {
    for (long count : {1000L, 10000L, 100000L, 1000000L})
        std::printf("%8ld fields: %7.1f ns per plain field, %7.1f ns per deferred field\n", count,
                    NanosecondsPerField(count, false), NanosecondsPerField(count, true));
    return 0;
}
