#include "RCResourceFile.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <sys/wait.h>
#include <unistd.h>

#include <cstdlib>
#include <ctime>
#include <filesystem>
#include <list>
#include <string>
#include <vector>

#include "MsgIds.h"
#include "Msgs.h"
#include "Options.h"
#include "TempFolder.h"

namespace {

constexpr unsigned long kText = 0x54455854;  // 'TEXT'

RCResource* MakeResource(unsigned long type, short id, std::string const& bytes = "") {
    auto* resource = new RCResource(type, id);
    resource->AddContents(bytes.data(), static_cast<long>(bytes.size()));
    return resource;
}

TEST(RCResourceFile, KeepsTheFirstOfATypeAndIdAndFindsFreeIds) {
    RCResourceFile file("out/r.rsrc");
    RCResource* first = MakeResource(kText, 1, "first");
    for (RCResource* resource : {first, MakeResource(kText, -1), MakeResource(kText + 1, 1), MakeResource(kText, 32767)})
        EXPECT_EQ(file.AddResource(resource), 0);
    RCResource second(kText, 1);
    EXPECT_EQ(file.AddResource(&second), kMsg_DuplicateResource);
    EXPECT_EQ(file.Lookup(kText, 1), first);
    EXPECT_EQ(file.Lookup(kText, 2), nullptr);

    EXPECT_EQ(file.UniqueResId(kText, 2), 2);
    EXPECT_EQ(file.UniqueResId(kText, 1), 2);
    EXPECT_EQ(file.UniqueResId(kText, 32767), -32768);
}

// Every id but one of a type, and the same ids of a type that differs only beyond the low 32 bits:
// the index tells them all apart as it grows, and the one free id is found from any start.
TEST(RCResourceFile, TellsEveryTypeAndIdApartAcrossGrowth) {
    RCResourceFile file("out/r.rsrc");
    unsigned long const wideType = kText | (1UL << 40);
    constexpr short kFree = 5;
    for (int id = -32768; id <= 32767; ++id) {
        if (id == kFree) continue;
        ASSERT_EQ(file.AddResource(MakeResource(kText, static_cast<short>(id))), 0);
        if (id % 7 == 0) {
            ASSERT_EQ(file.AddResource(MakeResource(wideType, static_cast<short>(id))), 0);
        }
    }
    for (int id = -32768; id <= 32767; ++id) {
        RCResource* found = file.Lookup(kText, static_cast<short>(id));
        if (id == kFree) {
            EXPECT_EQ(found, nullptr);
            continue;
        }
        ASSERT_NE(found, nullptr);
        EXPECT_EQ(found->GetId(), id);
        EXPECT_EQ(found->GetType(), kText);
        EXPECT_EQ(file.Lookup(wideType, static_cast<short>(id)) != nullptr, id % 7 == 0) << id;
    }
    RCResource duplicate(wideType, 7);
    EXPECT_EQ(file.AddResource(&duplicate), kMsg_DuplicateResource);
    EXPECT_EQ(file.UniqueResId(kText, kFree + 1), kFree);
    EXPECT_EQ(file.UniqueResId(kText, -32768), kFree);
}

struct Entry {
    unsigned long fType;
    short fId;
    std::string fBytes;
};

// Output passes of WriteFile into a temporary folder, with the command line given per pass.
class WriteFileTest : public ::testing::Test {
protected:
    void SetUp() override { fThrewOnExit = Msgs::ThrowOnExit(true); }
    void TearDown() override {
        delete gOptions;
        gOptions = nullptr;
        Msgs::ThrowOnExit(fThrewOnExit);
    }

    // Options keeps its texts by pointer, so the fixture keeps them alive.
    void Configure(std::string const& output, std::vector<std::string> const& files,
                   std::vector<std::string> const& macros = {}) {
        delete gOptions;
        gOptions = new Options;
        gOptions->AddOutput(Keep(output));
        for (auto const& file : files) gOptions->AddFile(Keep(file));
        for (auto const& macro : macros) gOptions->AddMacro(Keep(macro), "1");
    }
    char const* Keep(std::string const& text) { return fTexts.emplace_back(text).c_str(); }

    int Write(std::vector<Entry> const& entries) {
        RCResourceFile file(gOptions->GetOutput());
        for (auto const& entry : entries) file.AddResource(MakeResource(entry.fType, entry.fId, entry.fBytes));
        return file.WriteFile(nullptr);
    }

    // A pass that must end the process with exit code 1 and show message. It runs in a child
    // process, so that the error it counts does not stay behind for later tests.
    void ExpectStop(std::vector<Entry> const& entries, std::string const& message) {
        EXPECT_EXIT(
            {
                try {
                    Write(entries);
                } catch (Msgs::Exception const& stop) {
                    std::exit(stop.GetExitCode());
                }
            },
            testing::ExitedWithCode(1), testing::HasSubstr(message));
    }

    TempFolder fTemp;
    std::list<std::string> fTexts;
    bool fThrewOnExit = false;
};

std::string const kConflictTail =
    " do not match. This is likely due to VELOR being called twice for different .vd files in the same "
    "project. Use one .vd file and #include these instead.\n";

TEST_F(WriteFileTest, WritesOneFilePerResourceBesideAnEmptyOutputFile) {
    fTemp.Put("out/r.rsrc", "old contents");
    Configure(fTemp / "out/r.rsrc", {"in.vd"});
    ASSERT_EQ(Write({{kText, 1, "\xA5\x34\x12"}, {kText, -1, ""}, {0x53545220, 128, "s"}, {0x41420043, 2, "z"}}), 0);
    EXPECT_EQ(fTemp.Read("out//vlbk_TEXT/1.vlbk"), "\xA5\x34\x12");
    for (auto empty : {"vlbk_TEXT/65535.vlbk", "r.rsrc"}) {
        EXPECT_TRUE(fTemp.Has(std::string("out/") + empty));
        EXPECT_EQ(fTemp.Read(std::string("out/") + empty), "");
    }
    EXPECT_EQ(fTemp.Read("out/vlbk_STR /128.vlbk") + fTemp.Read("out/vlbk_AB/2.vlbk"), "sz");
    EXPECT_EQ(fTemp.Read("out/vdFilePath"), "in.vd");
    EXPECT_FALSE(fTemp.Has("out/timestamp.vlbk"));

    fTemp.Put("out/vdFilePath", "");
    fTemp.Put("out/vlbk_TEXT/9.vlbk");
    EXPECT_EQ(Write({}), 0);
    EXPECT_EQ(fTemp.Read("out/vdFilePath"), "") << "a pass without resources checks no record";
    EXPECT_FALSE(fTemp.Has("out/vlbk_TEXT/9.vlbk"));
}

TEST_F(WriteFileTest, AnotherSourceStopsOnceAndIsRecordedForTheNextRun) {
    fTemp.Put("out/r.rsrc");
    Configure(fTemp / "out/r.rsrc", {"a.vd"});
    ASSERT_EQ(Write({{kText, 1, ""}}), 0);

    Configure(fTemp / "out/r.rsrc", {"b.vd"});
    ExpectStop({{kText, 2, ""}}, "# Error: Previous .vd file a.vd and current .vd file b.vd" + kConflictTail);
    EXPECT_FALSE(fTemp.Has("out/vlbk_TEXT/1.vlbk"));
    EXPECT_FALSE(fTemp.Has("out/vlbk_TEXT/2.vlbk"));
    EXPECT_EQ(fTemp.Read("out/vdFilePath"), "b.vd");

    EXPECT_EQ(Write({{kText, 2, ""}}), 0);
    EXPECT_TRUE(fTemp.Has("out/vlbk_TEXT/2.vlbk"));
}

TEST_F(WriteFileTest, RecordIsComparedAsBlankSeparatedWords) {
    Configure(fTemp / "out/r.rsrc", {"a.vd"});
    fTemp.Put("out/vdFilePath", "  a.vd");
    EXPECT_EQ(Write({{kText, 1, ""}}), 0);

    fTemp.Put("out/vdFilePath", "a.vd\n");
    ExpectStop({{kText, 1, ""}}, "file a.vd  and current .vd file a.vd do");
    fTemp.Put("out/vdFilePath", "");
    ExpectStop({{kText, 1, ""}}, "file  and current");

    Configure(fTemp / "out/r.rsrc", {"100%%.vd"});
    fTemp.Put("out/vdFilePath", "x%d");
    ExpectStop({{kText, 1, ""}}, "file x%d and current .vd file 100%.vd do");
}

TEST_F(WriteFileTest, MoreThanOneInputFileStopsAfterTheCleaning) {
    fTemp.Put("out/vlbk_TEXT/1.vlbk");
    Configure(fTemp / "out/r.rsrc", {"a.vd", "b.vd"});
    ExpectStop({{kText, 1, ""}}, "# Error: Trying to handle more than one .vd file:\nFile: a.vd\nFile: b.vd\n");
    EXPECT_FALSE(fTemp.Has("out/vlbk_TEXT/1.vlbk"));
    EXPECT_FALSE(fTemp.Has("out/vdFilePath"));
}

TEST_F(WriteFileTest, DebugMacroFromTheCommandLineWritesATimeStamp) {
    fTemp.Put("out/r.rsrc");
    Configure(fTemp / "out/r.rsrc", {"in.vd"}, {"debug", "DEBUGX"});
    Write({{kText, 1, ""}});
    EXPECT_FALSE(fTemp.Has("out/timestamp.vlbk"));

    Configure(fTemp / "out/r.rsrc", {"in.vd"}, {"DEBUG"});
    long before = static_cast<long>(std::time(nullptr));
    Write({{kText, 1, ""}, {kText, 2, ""}});
    EXPECT_GE(std::stol(fTemp.Read("out/timestamp.vlbk")), before);
}

TEST_F(WriteFileTest, OutputPathsThatCannotBeCreatedWriteNoResource) {
    std::string const message = "CFURLGetFSRef failed - maybe the output directory doesn't exist? (";
    Configure("velor-test-no-folder.rsrc", {"in.vd"});
    testing::internal::CaptureStderr();
    EXPECT_NE(Write({{kText, 1, ""}}), 0);
    EXPECT_EQ(testing::internal::GetCapturedStderr(), message + "velor-test-no-folder.rsrc)\n");

    Configure(fTemp / "missing/r.rsrc", {"in.vd"});
    testing::internal::CaptureStderr();
    EXPECT_NE(Write({{kText, 1, ""}}), 0);
    EXPECT_EQ(testing::internal::GetCapturedStderr(), message + fTemp / "missing" + ")\n");
    EXPECT_FALSE(fTemp.Has("missing"));

    fTemp.Put("out/old.vlbk");
    std::string folder = fTemp / "out/";
    Configure(folder + std::string(256 - folder.size(), 'x'), {"in.vd"});
    testing::internal::CaptureStderr();
    EXPECT_NE(Write({{kText, 1, ""}}), 0);
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
    EXPECT_FALSE(fTemp.Has("out/old.vlbk"));
    EXPECT_FALSE(fTemp.Has("out/vlbk_TEXT"));
}

TEST_F(WriteFileTest, FailedResourceWriteStopsThePassAndLeavesOtherFilesAlone) {
    fTemp.Put("out/r.rsrc");
    fTemp.Put("out/vlbk_BLOK", "a file where the type folder belongs");
    fTemp.Put("out/keep.txt", "keep");
    Configure(fTemp / "out/r.rsrc", {"in.vd"});
    EXPECT_EQ(Write({{kText, 1, ""}, {0x424C4F4B, 2, ""}, {kText, 3, ""}}), 1);
    EXPECT_TRUE(fTemp.Has("out/vlbk_TEXT/1.vlbk"));
    EXPECT_FALSE(fTemp.Has("out/vlbk_TEXT/3.vlbk"));
    EXPECT_EQ(fTemp.Read("out/vlbk_BLOK"), "a file where the type folder belongs");
    EXPECT_EQ(fTemp.Read("out/keep.txt"), "keep");
}

TEST_F(WriteFileTest, LinksInTheOutputTreeAreRemovedOrRefusedNeverFollowed) {
    namespace fs = std::filesystem;
    // The victim holds the source's name, so that the record read through the link agrees.
    fTemp.Put("victim", "in.vd");
    fTemp.Put("elsewhere/old.vlbk", "outside too");
    fTemp.Put("out/vlbk_TEXT/keep");
    for (auto link : {"out/r.rsrc", "out/vlbk_TEXT/1.vlbk", "out/timestamp.vlbk", "out/vdFilePath"})
        fs::create_symlink(fTemp / "victim", fTemp / link);
    fs::create_directory_symlink(fTemp / "elsewhere", fTemp / "out/linked.vlbk");
    fs::create_directory_symlink(fTemp / "elsewhere", fTemp / "out/linked");
    Configure(fTemp / "out/r.rsrc", {"in.vd"}, {"DEBUG"});
    EXPECT_EQ(Write({{kText, 1, "new"}}), 0);
    EXPECT_EQ(fTemp.Read("victim"), "in.vd");
    EXPECT_EQ(fTemp.Read("elsewhere/old.vlbk"), "outside too");
    EXPECT_FALSE(fs::is_symlink(fTemp / "out/linked.vlbk"));
    for (auto file : {"out/r.rsrc", "out/vlbk_TEXT/1.vlbk", "out/timestamp.vlbk", "out/vdFilePath"})
        EXPECT_FALSE(fs::is_symlink(fTemp / file)) << file;
    EXPECT_EQ(fTemp.Read("out/vlbk_TEXT/1.vlbk") + fTemp.Read("out/vdFilePath"), "newin.vd");

    // A type folder that is a link takes no file, like a type folder that cannot be made.
    fs::create_directory_symlink(fTemp / "elsewhere", fTemp / "out/vlbk_LINK");
    EXPECT_EQ(Write({{0x4C494E4B, 1, "x"}, {kText, 2, ""}}), 1);
    EXPECT_FALSE(fTemp.Has("elsewhere/1.vlbk"));
    EXPECT_FALSE(fTemp.Has("out/vlbk_TEXT/2.vlbk"));
}

TEST_F(WriteFileTest, RecordIsReplacedWholeAndItsTemporaryNeverStays) {
    Configure(fTemp / "out/r.rsrc", {"in.vd"});
    fTemp.Put("out/vdFilePath", "in.vd");
    fTemp.Put("out/vdFilePath.new.vlbk", "left by a killed run");
    ASSERT_EQ(Write({{kText, 1, ""}, {kText, 2, ""}}), 0);
    EXPECT_EQ(fTemp.Read("out/vdFilePath"), "in.vd");
    EXPECT_FALSE(fTemp.Has("out/vdFilePath.new.vlbk"));
}

// Two runs into one folder at once, as a parallel build starts them: each must find the other's
// output neither missing nor in the way of its record check.
TEST_F(WriteFileTest, ConcurrentRunsTakeTurnsAndBothLeaveTheWholeOutput) {
    std::vector<Entry> entries;
    for (short id = 0; id < 300; ++id) entries.push_back({kText, id, std::string(id % 7, 'v')});
    fTemp.Put("out/r.rsrc");
    Configure(fTemp / "out/r.rsrc", {"in.vd"});
    pid_t runs[2];
    for (pid_t& run : runs)
        if ((run = fork()) == 0) _exit(Write(entries));
    for (pid_t run : runs) {
        int status = -1;
        ASSERT_EQ(waitpid(run, &status, 0), run);
        EXPECT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) == 0) << status;
    }
    for (auto const& entry : entries)
        EXPECT_EQ(fTemp.Read("out/vlbk_TEXT/" + std::to_string(entry.fId) + ".vlbk"), entry.fBytes) << entry.fId;
    EXPECT_EQ(fTemp.Read("out/vdFilePath"), "in.vd");
}

}  // namespace
