// The multi-string table: entries are gathered into an index and a text area as they are read,
// then the index is sorted by id, checked for repeated ids, and laid out in front of the text.
// Offsets in the index count from the start of the resource, so they are known only once the
// number of entries, and with it the size of the header, is.
#include "RCStatement_MultiString.h"

#include <algorithm>
#include <cstdint>
#include <vector>

#include "DataArea.h"
#include "MsgIds.h"
#include "RCBindings.h"
#include "RCByteString.h"
#include "RCDescription.h"
#include "RCScanner.h"

namespace {

// Offsets are 16-bit, so neither the header nor the text may pass this size in all.
constexpr std::uint64_t kMaxResourceSize = 65535;

constexpr std::uint64_t kTextStart = 64;
constexpr std::uint64_t kTextStep = 256;

// One entry of the index. Only id and offset go into the resource, in that order.
struct Entry {
    std::uint16_t id;
    std::uint16_t offset;
    std::uint16_t start;   // of the string in the text area
    std::uint16_t length;  // of the string with its zero byte
};

// Ids order as signed 16-bit numbers, so -1 comes before 1.
bool ComesBefore(Entry const& left, Entry const& right) {
    return static_cast<std::int16_t>(left.id) < static_cast<std::int16_t>(right.id);
}

// Appends the string and its zero byte to the text area and consumes the value. An empty string,
// like a failed write, refuses the entry without a message.
bool AppendString(DataArea& text, RCByteString& value, Entry& entry) {
    if (!value.fData) return false;
    std::uint64_t const start = text.GetCursor();
    std::uint64_t const written = text.Write(value.fData, static_cast<std::uint64_t>(value.fLength));
    value.Destroy();
    if (written == 0 || text.PutChar(0) == -1) return false;
    entry.start = static_cast<std::uint16_t>(start);
    entry.length = static_cast<std::uint16_t>(text.GetCursor() - start);
    return true;
}

// The index and the text area of the table being laid. A table holds no other statement, so one
// is laid at a time, and each table after the first reuses the storage of those before it.
struct Table {
    std::vector<Entry> index;
    // Room for the few short strings of a usual table, so that appending them does not grow it.
    DataArea text{kTextStart, kTextStep, false};
};

Table& emptyTable() {
    static Table table;
    table.index.clear();
    table.text.Reset();
    return table;
}

void AddWord(RCBindings* bindings, RCScanner* scanner, std::uint16_t word) {
    bindings->AddBytes(scanner, &word, sizeof word);
}

}  // namespace

bool RCStatement_MultiString::CreateResource(RCBindings* bindings, RCScanner* scanner) {
    Table& table = emptyTable();
    std::vector<Entry>& index = table.index;
    DataArea& text = table.text;
    while (scanner->TokenType() != kPPScan_RCurly) {
        long id = 0;
        if (!CreateResource_Long(scanner, bindings, &id)) return false;
        if (!scanner->Scan(kPPScan_Comma, kMsg_ExpectedComma)) return false;
        RCByteString value;
        if (!CreateResource_String(scanner, bindings, &value)) return false;
        Entry entry{static_cast<std::uint16_t>(id), 0, 0, 0};
        if (!AppendString(text, value, entry)) return false;
        index.push_back(entry);
        if (!scanner->Scan(kPPScan_Semicolon)) break;
    }
    if (index.empty()) {
        scanner->Error(kMsg_MultiStringEmpty, 0);
        return false;
    }
    std::uint64_t const headerSize = index.size() * 4 + 2;
    if (text.GetCursor() + headerSize > kMaxResourceSize) {
        scanner->Error(kMsg_MultiStringTooLarge, 0);
        return false;
    }

    std::sort(index.begin(), index.end(), ComesBefore);
    for (std::size_t i = 0; i < index.size(); ++i) {
        if (i > 0 && index[i].id == index[i - 1].id) {
            scanner->Error(kMsg_DuplicateStringIds, 1, static_cast<long>(index[i].id));
            return false;
        }
        index[i].offset = static_cast<std::uint16_t>(index[i].start + headerSize);
    }

    AddWord(bindings, scanner, static_cast<std::uint16_t>(index.size()));
    for (Entry const& entry : index) {
        AddWord(bindings, scanner, entry.id);
        AddWord(bindings, scanner, entry.offset);
    }
    WithLockedDataArea locked(&text);
    return bindings->AddBytes(scanner, text.GetData(0), static_cast<long>(text.GetCursor()));
}

void RCStatement_MultiString::WriteDescription(DataArea* area, int) { writePayload(area, kDesc_Multistring); }

bool RCStatement_MultiString::ConsumesInput() const { return true; }
