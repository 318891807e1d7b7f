// Support for the tests of the expression language and the binding engine: a scanner over a text
// in memory, bindings with an open frame, and the messages the compiler writes meanwhile.
#pragma once

#include <gtest/gtest.h>

#include <string>
#include <utility>

#include "Msgs.h"
#include "RCBindDefinition.h"
#include "PPMacTbl.h"
#include "PPMemMgr.h"
#include "RCBindings.h"
#include "RCScanner.h"
#include "RCSymTbl.h"

class RCTestScanner {
public:
    // The text is read as the file "t.vd", and its first token is current.
    explicit RCTestScanner(char const* text) {
        fScanner.PushInput(fScanner.ReadFile(text, "t.vd"));
        fScanner.NextToken();
    }

    RCScanner* get() { return &fScanner; }
    operator RCScanner*() { return &fScanner; }
    RCScanner* operator->() { return &fScanner; }

private:
    PP_CMemoryManager_Basic fMemory;
    PP_CMacroTable_Basic fMacros{&fMemory};
    RCScanner fScanner{&fMemory, &fMacros, nullptr};
};

// Bindings of one resource with the frame of one type instance open until Close.
class RCTestBindings {
public:
    explicit RCTestBindings(RCScanner* scanner)
        : fScanner(scanner), fBindings(&fSymbols, nullptr, 0, 0) {
        fBindings.PushDefn(nullptr);
    }

    RCBindings* get() { return &fBindings; }
    RCBindings* operator->() { return &fBindings; }
    RCSymbolTable& Symbols() { return fSymbols; }

    // Pops the frame, which patches its fixups, and gives the finished bytes as text "A5 34 12".
    std::string Close() {
        fBindings.PopDefn(fScanner);
        return Bytes();
    }

    std::string Bytes() {
        std::string text;
        unsigned char const* data = static_cast<unsigned char const*>(fBindings.ResourceData());
        char hex[4];
        for (long i = 0; i < fBindings.ResourceSize(); ++i) {
            std::snprintf(hex, sizeof hex, i == 0 ? "%02X" : " %02X", data[i]);
            text += hex;
        }
        return text;
    }

private:
    RCScanner* fScanner;
    RCSymbolTable fSymbols;
    RCBindings fBindings;
};

// Collects what is written to the standard error stream while it lives.
class RCCapturedMessages {
public:
    RCCapturedMessages() { testing::internal::CaptureStderr(); }
    ~RCCapturedMessages() {
        if (!fTaken) testing::internal::GetCapturedStderr();
    }

    std::string Text() {
        fTaken = true;
        return testing::internal::GetCapturedStderr();
    }

private:
    bool fTaken = false;
};

// Lowers the bound on a resource's size and has a fatal message throw, while it lives.
class RCLoweredBound {
public:
    explicit RCLoweredBound(unsigned long bytes)
        : fThrewOnExit(Msgs::ThrowOnExit(true)), fBound(std::exchange(RCBindings::fgMaxResourceBytes, bytes)) {}
    RCLoweredBound(RCLoweredBound const&) = delete;
    RCLoweredBound& operator=(RCLoweredBound const&) = delete;
    ~RCLoweredBound() {
        RCBindings::fgMaxResourceBytes = fBound;
        Msgs::ThrowOnExit(fThrewOnExit);
    }

private:
    bool fThrewOnExit;
    unsigned long fBound;
};

// Occurrences of a piece of text in another.
inline int countOf(std::string const& text, std::string const& piece) {
    int count = 0;
    for (size_t at = text.find(piece); at != std::string::npos; at = text.find(piece, at + piece.size())) ++count;
    return count;
}
