// The ordered include directories of a run, and the search through them.
#pragma once

#include "Vector.h"

class IncDir;
class IncFile;
class SymNameTable;

// An ordered set of directories.
class DirBag {
public:
    DirBag() = default;
    DirBag(DirBag const&) = delete;
    DirBag& operator=(DirBag const&) = delete;
    virtual ~DirBag() = default;

    long IDirBag() { return fDirectories.IVector(); }

    int DirectoryCount() const { return static_cast<int>(fDirectories.Count()); }
    IncDir* GetDirectory(int i) const { return static_cast<IncDir*>(fDirectories.At(i)); }

    // Returns true when the directory was there already.
    virtual bool AddDirectory(IncDir const* directory);
    virtual void MakeEmpty();

private:
    Vector fDirectories;
};

// The directories in search order, with a cache of the names found through them.
class RCSearchPath : public DirBag {
public:
    RCSearchPath() = default;
    ~RCSearchPath() override;

    long ISearchPath();

    // A directory whose name differs only in case from one in the list counts as that one.
    bool AddDirectory(IncDir const* directory) override;

    // A full path is taken as it stands; any other name is looked for in each directory in
    // order, and the first that holds it wins. A name found once is answered from the cache
    // from then on, without touching the disk; a name not found is searched for again each time.
    IncFile* FindIncFile(char const* name);

    void MakeEmpty() override;

private:
    void CreateNameTables();
    IncFile* FindInDirectories(char const* name) const;

    SymNameTable* fFound = nullptr;
};

// The search path of the run, owned by the tool.
extern RCSearchPath* gSearchPath;
