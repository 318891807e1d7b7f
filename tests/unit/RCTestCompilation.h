// A compilation of a text through the top-level statements, for the tests of type bodies and
// resources: the messages it showed, the errors it counted and the resources it made.
#pragma once

#include <gtest/gtest.h>

#include <cstring>
#include <string>

#include "Msgs.h"
#include "Options.h"
#include "PPMacTbl.h"
#include "PPMemMgr.h"
#include "RCHash.h"
#include "RCDefinition.h"
#include "RCResourceFile.h"
#include "RCScanner.h"
#include "RCSymTbl.h"
#include "RCTopLevel.h"
#include "UniqueNames.h"

inline constexpr unsigned long kType = 0x54455354;                // 'TEST'
inline constexpr unsigned long kInstanceDescription = 0x46577244;  // 'FWrD'

// Compiles a text through the top-level statements and keeps what it said and made.
class Compilation : public testing::Test {
protected:
    Compilation() : fMacros(&fMemory), fScanner(&fMemory, &fMacros, &fSymbols), fResources("out/r.rsrc") {
        gOptions = &fOptions;
    }
    ~Compilation() override { gOptions = fPreviousOptions; }

    // Runs every statement of the text through the tool's loop, without stopping on errors, and
    // returns the messages shown. When messages throw, a fatal one ends the loop and sets fEnded.
    std::string Compile(char const* text) {
        uint32_t errorsBefore = Msgs::GetErrorCount();
        testing::internal::CaptureStderr();
        fScanner.PushInput(fScanner.ReadFile(text, "test.vd"));
        try {
            fScanner.NextToken();
            CompileTopLevel(&fScanner, &fMacros, &fResources, [] {});
        } catch (Msgs::Exception const&) {
            fEnded = true;
        }
        fErrors = Msgs::GetErrorCount() - errorsBefore;
        return testing::internal::GetCapturedStderr();
    }

    // The text of a description resource, without its terminating zero, or "missing".
    std::string Description(char const* name) {
        short id = static_cast<short>(RCHash(name, static_cast<int>(std::strlen(name))));
        RCResource* resource = fResources.Lookup(kInstanceDescription, id);
        if (!resource) return "missing";
        std::string text(resource->GetContents(), resource->GetContentsLength());
        EXPECT_EQ('\0', text.back());
        return text.substr(0, text.size() - 1);
    }

    // The bytes of a resource, or "missing".
    std::string Bytes(short id, unsigned long type = kType) {
        RCResource* resource = fResources.Lookup(type, id);
        if (!resource) return "missing";
        std::string hex;
        char byte[4];
        for (long i = 0; i < resource->GetContentsLength(); ++i) {
            snprintf(byte, sizeof byte, "%02X", static_cast<unsigned char>(resource->GetContents()[i]));
            hex += hex.empty() ? byte : std::string(" ") + byte;
        }
        return hex;
    }

    Options fOptions;
    Options* fPreviousOptions = gOptions;
    PP_CMemoryManager_Basic fMemory;
    PP_CMacroTable_Basic fMacros;
    RCSymbolTable fSymbols;
    RCScanner fScanner;
    RCResourceFile fResources;
    uint32_t fErrors = 0;
    bool fEnded = false;
};
