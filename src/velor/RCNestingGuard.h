// A limit on how deep the parsers and the instance walk may recurse over a user's input. Each
// kind of nesting (expressions, type instances, arrays) counts its depth in one RCNesting; a
// guard takes levels of it for the time of one call and gives them back however the call ends,
// so that input nested past the limit ends in the kind's message rather than a stack overflow.
#pragma once

class RCScanner;

// The depth of one kind of nesting, shared by all guards of that kind.
struct RCNesting {
    int const fLimit;
    int const fMessage;  // reported each time a level past the limit is refused
    int fDepth = 0;
};

class RCNestingGuard {
public:
    explicit RCNestingGuard(RCNesting& nesting) : fNesting(nesting) {}
    RCNestingGuard(RCNestingGuard const&) = delete;
    RCNestingGuard& operator=(RCNestingGuard const&) = delete;
    ~RCNestingGuard() { fNesting.fDepth -= fTaken; }

    // One level deeper; false, with the kind's message reported, once past the limit. Every
    // expression, value and type instance takes a level, so the test stays inline.
    bool Deeper(RCScanner* scanner) { return TryDeeper() || Refuse(scanner); }
    // The same for a caller with a way of its own to refuse: nothing is reported.
    bool TryDeeper() {
        ++fTaken;
        return ++fNesting.fDepth <= fNesting.fLimit;
    }

private:
    // Reports the kind's message; always false.
    bool Refuse(RCScanner* scanner);

    RCNesting& fNesting;
    int fTaken = 0;
};
