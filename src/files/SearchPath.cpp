// The search through the include directories in order; the first directory that has the file wins.

#include "SearchPath.h"

#include "IncDir.h"
#include "MarkRelease.h"
#include "PathName.h"
#include "UniqueNames.h"

RCSearchPath* gSearchPath = nullptr;

bool DirBag::AddDirectory(IncDir const* directory) {
    return fDirectories.AddOnce(const_cast<IncDir*>(directory));
}

void DirBag::MakeEmpty() {
    fDirectories.MakeEmpty();
}

RCSearchPath::~RCSearchPath() {
    delete fFound;
}

long RCSearchPath::ISearchPath() {
    CreateNameTables();
    return IDirBag();
}

void RCSearchPath::CreateNameTables() {
    fFound = new SymNameTable;
    // The keys are interned names, which live as long as the process.
    fFound->ISymNameTable(false, &gPermanentMemory);
}

bool RCSearchPath::AddDirectory(IncDir const* directory) {
    for (int i = DirectoryCount() - 1; i >= 0; --i) {
        IncDir const* known = GetDirectory(i);
        if (known == directory || ustreql(known->DirectoryName(), directory->DirectoryName()))
            return true;
    }
    return DirBag::AddDirectory(directory);
}

IncFile* RCSearchPath::FindIncFile(char const* name) {
    char* key = saveString(name);
    if (auto* cached = static_cast<IncFile*>(fFound->Lookup(key))) return cached;

    IncFile* file = PathName::IsFullPath(key) ? IncFile::FindIncFile(key, false)
                                              : FindInDirectories(key);
    if (file != nullptr) fFound->Enter(key, file);
    return file;
}

IncFile* RCSearchPath::FindInDirectories(char const* name) const {
    for (int i = 0; i < DirectoryCount(); ++i)
        if (IncFile* file = GetDirectory(i)->FindIncFile(name, false)) return file;
    return nullptr;
}

void RCSearchPath::MakeEmpty() {
    DirBag::MakeEmpty();
    delete fFound;
    CreateNameTables();
}
