#include "RCResourceFile.h"

#include <gtest/gtest.h>

#include <ctime>
#include <string>
#include <vector>

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

TEST(RCResourceFile, IdentityIsTypeAndIdAndTheFirstOfAPairStays) {
    RCResourceFile file("out/r.rsrc");
    RCResource* first = MakeResource(kText, 1, "first");
    EXPECT_EQ(file.AddResource(first), 0);
    EXPECT_EQ(file.AddResource(MakeResource(kText, -1)), 0);
    EXPECT_EQ(file.AddResource(MakeResource(kText + 1, 1)), 0);

    RCResource second(kText, 1);
    EXPECT_EQ(file.AddResource(&second), RESDUPRESOURCE);
    EXPECT_EQ(file.Lookup(kText, 1), first);
    EXPECT_EQ(file.Lookup(kText, 2), nullptr);
    EXPECT_NE(file.Lookup(kText, -1), first);
}

TEST(RCResourceFile, UniqueResIdStepsOverTakenIdsAndWraps) {
    RCResourceFile file("out/r.rsrc");
    for (short id : {5, 6, 32767}) file.AddResource(MakeResource(kText, id));
    EXPECT_EQ(file.UniqueResId(kText, 4), 4);
    EXPECT_EQ(file.UniqueResId(kText, 5), 7);
    EXPECT_EQ(file.UniqueResId(kText, 32767), -32768);
    EXPECT_EQ(file.UniqueResId(kText + 1, 5), 5);
}

// Output passes of WriteFile into a temporary folder, with the command line given per pass.
class WriteFileTest : public ::testing::Test {
protected:
    void SetUp() override { Msgs::ThrowOnExit(true); }
    void TearDown() override { Configure("", {}); }

    void Configure(std::string const& output, std::vector<std::string> const& files,
                   std::vector<std::string> const& macros = {}) {
        delete gOptions;
        gOptions = nullptr;
        if (output.empty()) return;
        fArguments = files;
        fArguments.push_back(output);
        gOptions = new Options;
        gOptions->AddOutput(fArguments.back().c_str());
        for (size_t i = 0; i < files.size(); ++i) gOptions->AddFile(fArguments[i].c_str());
        for (auto const& macro : macros) gOptions->AddMacro(macro.c_str(), "1");
    }

    // One pass over the given resources; answers WriteFile's result, or the exit code of a stop.
    int Write(std::vector<RCResource*> const& resources) {
        RCResourceFile file(gOptions->GetOutput());
        for (RCResource* resource : resources) file.AddResource(resource);
        try {
            return file.WriteFile(nullptr);
        } catch (Msgs::Exception const& stop) {
            return 100 + stop.GetExitCode();
        }
    }

    TempFolder fTemp;
    std::vector<std::string> fArguments;
};

TEST_F(WriteFileTest, WritesOneFilePerResourceBesideAnEmptyOutputFile) {
    fTemp.Put("out/r.rsrc", "old contents");
    Configure(fTemp / "out/r.rsrc", {"in.vd"});
    ASSERT_EQ(Write({MakeResource(kText, 1, "\xA5\x34\x12"), MakeResource(kText, -1),
                     MakeResource(0x53545220, 128, "s"), MakeResource(0x41420043, 2, "z")}),
              0);
    EXPECT_EQ(fTemp.Read("out//vlbk_TEXT/1.vlbk"), "\xA5\x34\x12");
    EXPECT_TRUE(fTemp.Has("out//vlbk_TEXT/65535.vlbk"));
    EXPECT_EQ(fTemp.Read("out/vlbk_TEXT/65535.vlbk"), "");
    EXPECT_EQ(fTemp.Read("out/vlbk_STR /128.vlbk"), "s");
    EXPECT_EQ(fTemp.Read("out/vlbk_AB/2.vlbk"), "z");
    EXPECT_TRUE(fTemp.Has("out/r.rsrc"));
    EXPECT_EQ(fTemp.Read("out/r.rsrc"), "");
    EXPECT_EQ(fTemp.Read("out/vdFilePath"), "in.vd");
    EXPECT_FALSE(fTemp.Has("out/timestamp.vlbk"));
}

TEST_F(WriteFileTest, RunWithoutResourcesRecordsNoSource) {
    Configure(fTemp / "out/r.rsrc", {"in.vd"});
    fTemp.Put("out/vlbk_TEXT/9.vlbk");
    EXPECT_EQ(Write({}), 0);
    EXPECT_TRUE(fTemp.Has("out/r.rsrc"));
    EXPECT_FALSE(fTemp.Has("out/vdFilePath"));
    EXPECT_FALSE(fTemp.Has("out/vlbk_TEXT/9.vlbk"));
}

TEST_F(WriteFileTest, SecondSourceStopsOnceAndIsRecordedForTheNextRun) {
    fTemp.Put("out/r.rsrc");
    Configure(fTemp / "out/r.rsrc", {"a.vd"});
    ASSERT_EQ(Write({MakeResource(kText, 1)}), 0);

    Configure(fTemp / "out/r.rsrc", {"b.vd"});
    testing::internal::CaptureStderr();
    EXPECT_EQ(Write({MakeResource(kText, 2)}), 101);
    EXPECT_EQ(testing::internal::GetCapturedStderr(),
              "# Error: Previous .vd file a.vd and current .vd file b.vd do not match. This is likely due to "
              "VELOR being called twice for different .vd files in the same project. Use one .vd file and "
              "#include these instead.\n");
    EXPECT_FALSE(fTemp.Has("out/vlbk_TEXT/1.vlbk"));
    EXPECT_FALSE(fTemp.Has("out/vlbk_TEXT/2.vlbk"));
    EXPECT_EQ(fTemp.Read("out/vdFilePath"), "b.vd");

    EXPECT_EQ(Write({MakeResource(kText, 2)}), 0);
    EXPECT_TRUE(fTemp.Has("out/vlbk_TEXT/2.vlbk"));
}

TEST_F(WriteFileTest, RecordIsComparedWordByWord) {
    Configure(fTemp / "out/r.rsrc", {"a.vd"});
    fTemp.Put("out/vdFilePath", "  a.vd");
    EXPECT_EQ(Write({MakeResource(kText, 1)}), 0);

    for (std::string record : {"a.vd\n", ""}) {
        fTemp.Put("out/vdFilePath", record);
        testing::internal::CaptureStderr();
        EXPECT_EQ(Write({MakeResource(kText, 1)}), 101) << record;
        testing::internal::GetCapturedStderr();
    }

    Configure(fTemp / "out/r.rsrc", {"100%%.vd"});
    fTemp.Put("out/vdFilePath", "x%d");
    testing::internal::CaptureStderr();
    Write({MakeResource(kText, 1)});
    EXPECT_NE(testing::internal::GetCapturedStderr().find("file x%d and current .vd file 100%.vd do"),
              std::string::npos);
}

TEST_F(WriteFileTest, MoreThanOneInputFileStopsAfterTheCleaning) {
    fTemp.Put("out/vlbk_TEXT/1.vlbk");
    Configure(fTemp / "out/r.rsrc", {"a.vd", "b.vd"});
    testing::internal::CaptureStderr();
    EXPECT_EQ(Write({MakeResource(kText, 1)}), 101);
    EXPECT_EQ(testing::internal::GetCapturedStderr(),
              "# Error: Trying to handle more than one .vd file:\nFile: a.vd\nFile: b.vd\n");
    EXPECT_FALSE(fTemp.Has("out/vlbk_TEXT/1.vlbk"));
    EXPECT_FALSE(fTemp.Has("out/vdFilePath"));
}

TEST_F(WriteFileTest, DebugMacroFromTheCommandLineWritesATimeStamp) {
    fTemp.Put("out/r.rsrc");
    Configure(fTemp / "out/r.rsrc", {"in.vd"}, {"debug", "DEBUGX"});
    Write({MakeResource(kText, 1)});
    EXPECT_FALSE(fTemp.Has("out/timestamp.vlbk"));

    Configure(fTemp / "out/r.rsrc", {"in.vd"}, {"DEBUG"});
    long before = static_cast<long>(std::time(nullptr));
    Write({MakeResource(kText, 1), MakeResource(kText, 2)});
    long stamp = std::stol(fTemp.Read("out/timestamp.vlbk"));
    EXPECT_GE(stamp, before);
    EXPECT_LE(stamp, static_cast<long>(std::time(nullptr)));
}

TEST_F(WriteFileTest, OutputPathsThatCannotBeCreatedWriteNoResource) {
    Configure("velor-test-no-folder.rsrc", {"in.vd"});
    testing::internal::CaptureStderr();
    EXPECT_NE(Write({MakeResource(kText, 1)}), 0);
    EXPECT_EQ(testing::internal::GetCapturedStderr(),
              "CFURLGetFSRef failed - maybe the output directory doesn't exist? (velor-test-no-folder.rsrc)\n");

    Configure(fTemp / "missing/r.rsrc", {"in.vd"});
    testing::internal::CaptureStderr();
    EXPECT_NE(Write({MakeResource(kText, 1)}), 0);
    EXPECT_EQ(testing::internal::GetCapturedStderr(),
              "CFURLGetFSRef failed - maybe the output directory doesn't exist? (" + fTemp / "missing" + ")\n");
    EXPECT_FALSE(fTemp.Has("missing"));

    fTemp.Put("out/old.vlbk");
    std::string tooLong = fTemp / "out/" + std::string(256 - (fTemp / "out/").size(), 'x');
    Configure(tooLong, {"in.vd"});
    testing::internal::CaptureStderr();
    EXPECT_NE(Write({MakeResource(kText, 1)}), 0);
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
    EXPECT_FALSE(fTemp.Has("out/old.vlbk"));
    EXPECT_FALSE(fTemp.Has("out/vlbk_TEXT"));
}

TEST_F(WriteFileTest, FailedResourceWriteStopsThePassAndLeavesOtherFilesAlone) {
    fTemp.Put("out/r.rsrc");
    fTemp.Put("out/vlbk_BLOK", "a file where the type folder belongs");
    fTemp.Put("out/keep.txt", "keep");
    Configure(fTemp / "out/r.rsrc", {"in.vd"});
    EXPECT_EQ(Write({MakeResource(kText, 1), MakeResource(0x424C4F4B, 2), MakeResource(kText, 3)}), 1);
    EXPECT_TRUE(fTemp.Has("out/vlbk_TEXT/1.vlbk"));
    EXPECT_FALSE(fTemp.Has("out/vlbk_TEXT/3.vlbk"));
    EXPECT_EQ(fTemp.Read("out/vlbk_BLOK"), "a file where the type folder belongs");
    EXPECT_EQ(fTemp.Read("out/keep.txt"), "keep");
}

}  // namespace
