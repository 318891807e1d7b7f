// RCDescWalker: lists the bytes of a compiled resource field by field on standard output, guided
// by its two description texts: the type description, which holds every branch a type can take,
// and the instance description, a trace of what compilation actually did for this resource.
//
// The two texts are read in step. Every width, count and length comes from the instance text;
// the type text contributes the shape (which statement stands where, which case is which) and
// the statements that leave no trace. Only a multi-string reads its structure from the bytes.
//
// Invariant: no read leaves the resource or the texts. A text that does not fit the bytes, or
// does not fit the other text, throws RC_xBadDescription; assertions guard only what the walker
// has established itself.
#pragma once

#include <exception>

#include "PPText.h"
#include "RCNestingGuard.h"

class RC_xBadDescription : public std::exception {
public:
    char const* what() const noexcept override { return "the description does not fit the resource"; }
};

class RCDescWalker {
public:
    // A null text reads as an empty one.
    RCDescWalker(void const* data, unsigned long dataSize, char const* resourceDesc, char const* typeDesc);
    RCDescWalker(RCDescWalker const&) = default;
    ~RCDescWalker() = default;

    // Prints the listing and then three newlines.
    void Walk();

private:
    void const* fData;
    unsigned long fDataSize;
    PP_CTextReader fResourceDesc;
    PP_CTextReader fTypeDesc;
};

class RCDescWalkerHelper {
public:
    // The codes of the keywords the reader knows; 0 is any other word.
    enum EKnownNames : int {
        kUnknown = 0,
        kAlign,
        kArgs,
        kArray,
        kAs,
        kAuto,
        kBitString,
        kCase,
        kCount,
        kFill,
        kFillSpec,
        kFloat,
        kLabel,
        kLength,
        kMultiString,
        kName,
        kNull,
        kOneOf,
        kProg,
        kResType,
        kSet,
        kStatic,
        kString,
        kSwitch,
        kSuper,
        kType,
        kValue,
    };

    // Two more blanks at the start of each text line for the life of the guard.
    class Indent {
    public:
        explicit Indent(int& indent) : fIndent(indent) { fIndent += 2; }
        ~Indent() { fIndent -= 2; }
        Indent(Indent const&) = delete;
        Indent& operator=(Indent const&) = delete;

    private:
        int& fIndent;
    };

    RCDescWalkerHelper(void const* data, unsigned long dataSize, unsigned long bit, int indent);

    // Walks one type statement against its trace. Returns false when the statement leaves no
    // trace, so that the caller offers the same trace to the next statement.
    bool Walk(PP_CTextReader& aTypeDesc, PP_CTextReader& aResourceDesc);

    // Text scanning. A reader over one expression is the currency: scanning a list yields a
    // reader over each element in turn, and an empty one at the list's closing parenthesis.
    static PP_CTextReader ScanSExpr(PP_CTextReader& aTextReader);
    static int PeekSExpr(PP_CTextReader aTextReader);
    static PP_CTextReader FindSExpr(PP_CTextReader aTextReader, int name);
    static void EnterSExpr(PP_CTextReader& aTextReader);
    static void EnterSExpr(PP_CTextReader& aTextReader, int name);
    static unsigned long ReadNumber(PP_CTextReader& aTextReader);
    static int MapName(PP_CTextReader aTextReader);
    static void ExtractSuperAndBody(PP_CTextReader aTextReader, PP_CTextReader& super, PP_CTextReader& body);
    static void SkipWhiteSpace(PP_CTextReader& aTextReader);
    static void SkipNonWhiteSpace(PP_CTextReader& aTextReader);
    static void SkipBalancedParens(PP_CTextReader& aTextReader);
    static void SkipString(PP_CTextReader& aTextReader);

private:
    bool Walk_Align(PP_CTextReader& aTypeDesc, PP_CTextReader& aResourceDesc);
    bool Walk_Array(PP_CTextReader& aTypeDesc, PP_CTextReader& aResourceDesc);
    bool Walk_As(PP_CTextReader& aTypeDesc, PP_CTextReader& aResourceDesc);
    bool Walk_BitString(PP_CTextReader& aTypeDesc, PP_CTextReader& aResourceDesc);
    bool Walk_Fill(PP_CTextReader& aTypeDesc, PP_CTextReader& aResourceDesc);
    bool Walk_Float(PP_CTextReader& aTypeDesc, PP_CTextReader& aResourceDesc);
    bool Walk_MultiString(PP_CTextReader& aTypeDesc, PP_CTextReader& aResourceDesc);
    bool Walk_Prog(PP_CTextReader& aTypeDesc, PP_CTextReader& aResourceDesc);
    bool Walk_String(PP_CTextReader& aTypeDesc, PP_CTextReader& aResourceDesc);
    bool Walk_Switch(PP_CTextReader& aTypeDesc, PP_CTextReader& aResourceDesc);
    bool Walk_Super(PP_CTextReader& aTypeDesc, PP_CTextReader& aResourceDesc);
    bool Walk_Type(PP_CTextReader& aTypeDesc, PP_CTextReader& aResourceDesc);
    // The nested type found in the arguments of a super or as, walked as its own type.
    bool WalkNestedType(PP_CTextReader& aResourceDesc);
    // Enters a number field's trace and opens its line; returns its width.
    unsigned long EnterField(PP_CTextReader& aResourceDesc, int kind);

    // Data. Each read first checks that the resource holds the bits it asks for.
    long GetInteger(unsigned long bits);
    double GetFloat(unsigned long bits);
    unsigned char const* GetBytePtr() const;
    unsigned long BitsLeft() const { return fDataBits - fBit; }
    void RequireBits(unsigned long bits) const;
    // The zero-terminated text at offset bytes from base, which must end inside the resource.
    char const* TextAt(unsigned char const* base, unsigned long offset) const;

    // Output, all of it on standard output.
    void WriteTitle(char const* title);
    void WriteTitle(char const* title, unsigned long number);
    void WriteTitle(char const* title, PP_CTextReader& text);
    void WriteBitNo();
    void WriteBitNo(unsigned long width);
    void WriteInteger(long value);
    void WriteFloat(double value);
    void WriteChar(int c);
    void WriteText(char const* text);
    void WriteString(char const* text);
    void WriteIndent();
    void NewLine();
    void OpenLine();
    void CloseLine();

    unsigned char const* fData;
    unsigned long fDataBits;
    unsigned long fBit;
    int fIndent;
    bool fLineOpen;
    RCNesting fNesting;
};
