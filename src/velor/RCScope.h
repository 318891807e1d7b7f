// The intrusive list family of the resource language and the scope stack built from it.
//
// An RCList<T> keeps one pointer, to the last item of a singly linked circular chain; the item
// after the last is the first. Items carry their own fNext, so a list costs one word and an item
// one link, and a push at either end is O(1). A list owns its items; whether an item owns what it
// points at is the item's business (release() deletes both).
//
// Names are interned, so every name comparison in here is a pointer comparison.
#pragma once

#include "Assertion.h"
#include "RCAlloc.h"

struct UniqueStruct;

template <class T>
class RCList {
public:
    using ItemType = T;

    RCList() : fLast(nullptr) {}
    // Copying moves: the new list takes over the whole chain and the source is left empty.
    RCList(RCList& source) : fLast(source.Release()) {}
    RCList(RCList&& source) : fLast(source.Release()) {}
    ~RCList() { MakeEmpty(); }

    RCList& operator=(RCList& source) {
        if (this != &source) {
            MakeEmpty();
            fLast = source.Release();
        }
        return *this;
    }
    RCList& operator=(RCList&& source) { return *this = source; }

    // Adopts a chain given by its last item.
    RCList& operator=(T* last) {
        MakeEmpty();
        fLast = last;
        return *this;
    }

    T* First() const { return fLast ? Successor(fLast) : nullptr; }
    T* Last() const { return fLast; }
    T* GetList() const { return fLast; }

    // Puts the item at the head; fLast stays where it is.
    void Push(T* item) {
        if (fLast) {
            item->fNext = fLast->fNext;
            fLast->fNext = item;
        } else {
            item->fNext = item;
            fLast = item;
        }
    }

    void Append(T* item) {
        Push(item);
        fLast = item;
    }

    // Unlinks and returns the head, or null for an empty list.
    T* Pop() {
        if (!fLast) return nullptr;
        T* head = Successor(fLast);
        if (head == fLast)
            fLast = nullptr;
        else
            fLast->fNext = head->fNext;
        return head;
    }

    // Unlinks an item without deleting it. Relinking past the head cannot unlink the only item of
    // a one-item list, which therefore stays in the list; no caller removes items, and the rule is
    // kept as it is rather than grown a special case. An item not in the list is ignored.
    void Remove(T* item) {
        if (!fLast) return;
        if (item == First()) {
            fLast->fNext = item->fNext;
            return;
        }
        for (T* previous = First(); previous != fLast; previous = Successor(previous)) {
            if (Successor(previous) != item) continue;
            previous->fNext = item->fNext;
            if (item == fLast) fLast = previous;
            return;
        }
    }

    void MakeEmpty() {
        while (T* item = Pop()) delete item;
    }

    // Gives up the chain, by its last item, and leaves the list empty.
    T* Release() {
        T* last = fLast;
        fLast = nullptr;
        return last;
    }

    static T* Successor(T* item) { return static_cast<T*>(item->fNext); }

protected:
    T* fLast;
};

// Walks a list from first to last. Next() gives null once the last item was returned, and at once
// for an empty list. Items appended during a walk may or may not be seen.
template <class L>
class RCListIterator {
public:
    using Item = typename L::ItemType;

    explicit RCListIterator(L& list) : fList(list), fCursor(list.GetList()) {}

    Item* Next() {
        if (!fCursor) return nullptr;
        fCursor = L::Successor(fCursor);
        Item* result = fCursor;
        if (fCursor == fList.GetList()) fCursor = nullptr;
        return result;
    }

private:
    L& fList;
    Item* fCursor;
};

// Empties a list whose items point at objects they own: each item's value is deleted, then the
// item itself.
template <class L>
void release(L& list) {
    while (auto* item = list.Pop()) {
        delete item->fValue;
        delete item;
    }
}

template <class V>
struct RCListItem : RCRecycled {
    explicit RCListItem(V value) : fNext(nullptr), fValue(value) {}

    RCListItem* fNext;
    V fValue;
};

template <class V>
struct RCNamedListItem : RCRecycled {
    RCNamedListItem(UniqueStruct* name, V value) : fNext(nullptr), fName(name), fValue(value) {}

    UniqueStruct* Name() const { return fName; }

    RCNamedListItem* fNext;
    UniqueStruct* fName;
    V fValue;
};

// A list of items that answer Name().
template <class T>
class RCNamedList : public RCList<T> {
public:
    using RCList<T>::operator=;
    using RCList<T>::Append;

    // The first item of that name, from the head on, or null.
    T* Lookup(UniqueStruct* name) const {
        RCListIterator<RCNamedList const> items(*this);
        while (T* item = items.Next())
            if (item->Name() == name) return item;
        return nullptr;
    }

    // Makes an item of a name and a value and appends it.
    template <class V>
    T* Append(UniqueStruct* name, V const& value) {
        T* item = new T(name, value);
        this->Append(item);
        return item;
    }
};

// Points at a named object without owning it, and answers the object's name.
template <class T>
struct RCScopeListItem : RCListItem<T*> {
    explicit RCScopeListItem(T* value) : RCListItem<T*>(value) {}

    UniqueStruct* Name() const { return this->fValue->Name(); }
};

// One scope: the named objects visible in it. It has a link of its own so that it can be an item
// of the scope stack.
template <class T>
class RCScopeList : public RCNamedList<RCScopeListItem<T>>, public RCRecycled {
public:
    RCScopeList() : fNext(nullptr) {}

    RCScopeList* fNext;
};

template <class T>
using RCScopeListIterator = RCListIterator<RCScopeList<T>>;

// A stack of scopes with the innermost at the head. There is always a current scope to the
// callers; the outermost one is made only when something asks for it, since a frame is made for
// every type instance and most never put anything in most of its scopes. An absent scope finds
// nothing, as an empty one would. Destroying the stack deletes the scope lists and their items
// but leaves the named objects alone, unless ReleaseScope() handed them over first.
template <class T>
class RCScope : public RCList<RCScopeList<T>> {
public:
    void PushScope() { this->Push(new RCScopeList<T>); }

    // The caller deletes the scope list that it gets.
    RCScopeList<T>* PopScope() { return this->Pop(); }

    RCScopeList<T>* GetScope() {
        if (this->fLast == nullptr) PushScope();
        return this->First();
    }

    T* Lookup(UniqueStruct* name) const { return Lookup(name, false); }

    // Searches from the innermost scope outwards, or the innermost alone without allScopes.
    T* Lookup(UniqueStruct* name, bool allScopes) const {
        RCListIterator<RCScope const> scopes(*this);
        while (RCScopeList<T>* scope = scopes.Next()) {
            if (RCScopeListItem<T>* item = scope->Lookup(name)) return item->fValue;
            if (!allScopes) break;
        }
        return nullptr;
    }

    // A name may hide one of an outer scope but appears at most once in a scope.
    void Insert(T* aNamedItem) {
        VELOR_ASSERT(GetScope()->Lookup(aNamedItem->Name()) == 0);
        GetScope()->Push(new RCScopeListItem<T>(aNamedItem));
    }

    // Deletes the named objects of every scope, leaving the scopes empty.
    void ReleaseScope() {
        RCListIterator<RCScope> scopes(*this);
        while (RCScopeList<T>* scope = scopes.Next()) release(*scope);
    }
};

template <class T>
using RCScopeIterator = RCListIterator<RCScope<T>>;
