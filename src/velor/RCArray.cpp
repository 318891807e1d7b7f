// Arrays and array labels: element counts, and label positions kept by their subscripts.

#include "RCArray.h"

#include <algorithm>

#include "MsgIds.h"
#include "RCScanner.h"
#include "UniqueNames.h"

namespace {

constexpr long kFirstCapacity = 16;

void reportLabel(RCScanner* scanner, int message, UniqueStruct* name) {
    scanner->Error(message, 1, nameOf(name));
}

} // namespace

RCArrayLabel::~RCArrayLabel() {
    for (long i = 0; i < fCount; ++i) delete fChildren[i];
    RCFreeSmall(fChildren, TableBytes(fCapacity));
}

RCArrayLabel* RCArrayLabel::Fetch(RCScanner* scanner, UniqueStruct* name, int argc, long* subscripts,
                                  bool create) {
    RCArrayLabel* node = this;
    for (int level = 0; level < argc && node != nullptr; ++level) {
        // Subscripts are 1-based; testing before subtracting keeps the most negative one exact.
        if (subscripts[level] < 1) {
            reportLabel(scanner, kMsg_IndexNegative, name);
            return nullptr;
        }
        long index = subscripts[level] - 1;
        if (index >= fCount) {
            if (!create) {
                reportLabel(scanner, kMsg_IndexOutOfBounds, name);
                return nullptr;
            }
            GrowToHold(index);
            AppendUpTo(index);
        }
        node = fChildren[index];
    }
    return node;
}

void RCArrayLabel::GrowToHold(long index) {
    if (index < fCapacity) return;
    // Half as much again as the index asks for; at least enough for the index itself.
    long capacity = std::max(index == 0 ? kFirstCapacity : index * 3 / 2, index + 1);
    // Tables are made per resource, so the small ones are recycled like the labels themselves.
    auto* children = static_cast<RCArrayLabel**>(RCAllocSmallOrThrow(TableBytes(capacity)));
    std::copy(fChildren, fChildren + fCount, children);
    RCFreeSmall(fChildren, TableBytes(fCapacity));
    fChildren = children;
    fCapacity = capacity;
}

void RCArrayLabel::AppendUpTo(long index) {
    while (fCount < index) fChildren[fCount++] = nullptr;
    fChildren[fCount++] = new RCArrayLabel;
}

std::size_t RCArrayLabel::TableBytes(long capacity) {
    return static_cast<std::size_t>(capacity) * sizeof(RCArrayLabel*);
}

bool RCArrayLabel::IsLeaf(RCScanner* scanner, UniqueStruct* name, RCArrayLabel const* node) {
    if (node->fChildren == nullptr) return true;
    reportLabel(scanner, kMsg_TooFewIndices, name);
    return false;
}

long RCArrayLabel::Lookup(RCScanner* scanner, UniqueStruct* name, int argc, long* subscripts) {
    RCArrayLabel* node = Fetch(scanner, name, argc, subscripts, false);
    if (node == nullptr || !IsLeaf(scanner, name, node)) return 0;
    return node->fValue;
}

void RCArrayLabel::Assign(RCScanner* scanner, UniqueStruct* name, int argc, long* subscripts, long value) {
    RCArrayLabel* node = Fetch(scanner, name, argc, subscripts, true);
    if (node == nullptr) {
        reportLabel(scanner, kMsg_ArrayLabelNotFound, name);
        return;
    }
    if (IsLeaf(scanner, name, node)) node->fValue = value;
}
