// Include directories and the files found in them, both kept in the permanent arena; a file is
// looked for by joining the directory's spelling and the name.

#include "IncDir.h"

#include <algorithm>
#include <cstdio>
#include <cstring>

#include "MsgIds.h"
#include "Msgs.h"
#include "PathName.h"
#include "TemporaryBuffer.h"
#include "UniqueNames.h"

namespace {


// Every directory record by its spelling; texts are copied into the table.
SymNameTable& KnownDirectories() {
    static SymNameTable table;
    static bool initialized = false;
    if (!initialized) {
        table.ISymNameTable(true, &gPermanentMemory);
        initialized = true;
    }
    return table;
}

bool FileExists(char const* path) {
    std::FILE* file = std::fopen(path, "r");
    if (file == nullptr) return false;
    std::fclose(file);
    return true;
}

}  // namespace

IncDir::IncDir(char const* name)
    : fDirName(saveString(name)), fDirNameLength(std::strlen(name)) {}

IncDir* IncDir::FindIncDir(char const* name, bool create) {
    if (auto* known = static_cast<IncDir*>(KnownDirectories().Lookup(name))) return known;
    return create ? CreateIncDir(name) : nullptr;
}

IncDir* IncDir::CreateIncDir(char const* name) {
    IncDir* aDir = new (&gPermanentMemory) IncDir(name);
    KnownDirectories().Enter(name, aDir);
    return aDir;
}

char* IncDir::FullName(char const* name, char* buffer, unsigned long size) const {
    if (size == 0) return buffer;
    unsigned long dirBytes = std::min(fDirNameLength, size - 1);
    unsigned long nameBytes = std::min<unsigned long>(std::strlen(name), size - 1 - dirBytes);
    std::memcpy(buffer, fDirName, dirBytes);
    std::memcpy(buffer + dirBytes, name, nameBytes);
    buffer[dirBytes + nameBytes] = '\0';
    return buffer;
}

IncFile* IncDir::FindIncFile(char const* name, bool create) {
    if (PathName::IsFullPath(name)) return IncFile::FindIncFile(name, create);
    return FindInThisDirectory(name, create);
}

IncFile* IncDir::FindInThisDirectory(char const* name, bool create) {
    TemporaryBuffer path(fDirNameLength + std::strlen(name) + 1);
    FullName(name, path.GetBuffer(), path.GetSize());
    if (!FileExists(path.GetBuffer()) && !create) return nullptr;
    Msgs::Display(Msgs::kProgress, kMsg_FoundIncludeFile, name, fDirName);
    return NewFile(name);
}

IncFile* IncDir::NewFile(char const* name) {
    return new (&gPermanentMemory) IncFile(saveString(name), this);
}

IncFile* IncFile::FindIncFile(char const* path, bool create) {
    std::size_t length = std::strlen(path);
    TemporaryBuffer copy(length + 1);
    char* text = copy.GetBuffer();
    std::memcpy(text, path, length + 1);

    char* component = PathName::LastComponent(text);
    char first = *component;
    *component = '\0';
    IncDir* directory = IncDir::FindIncDir(text, true);
    *component = first;
    // The component is looked up in its directory as it stands: for "/" it is itself a full path,
    // and handing it back to the full-path route would never end.
    return directory->FindInThisDirectory(component, create);
}

char* IncFile::ValidName(char* buffer, int size) const {
    return fDirectory->FullName(fRelativeName, buffer, size > 0 ? size : 0);
}
