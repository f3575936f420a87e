#include "medialib/AddFolderThread.h"

#include "medialib/IMediaLibManager.h"
#include "platform/base/PostQueue.h"
#include "tests/medialib/Record.h"
#include "tests/medialib/ScriptedAttributes.h"
#include "tests/support/FakeHost.h"
#include "tests/support/TempFolder.h"

#include <gtest/gtest.h>

#include <atomic>
#include <functional>
#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace kivo::tunehive {
namespace {

// The tree's window, as far as an import knows it.
class ImportWindow : public CWnd {
public:
    ImportWindow() { CreateHandle(); }

    LPARAM WindowProc(unsigned message, WPARAM wParam, LPARAM lParam) override
    {
        EXPECT_EQ(message, 11014U);
        FolderImport import = TakeFolderImport(wParam, lParam);
        groups.push_back(import.groupId);
        lists.push_back(*import.paths);
        return 0;
    }

    std::vector<String> groups;
    std::vector<CStringArray> lists;
};

class AddFolderThreadTest : public testing::Test {
protected:
    AddFolderThreadTest() { GetMediaLibManager()->Initialize(library_.GetPath()); }
    ~AddFolderThreadTest() override
    {
        DestroyMediaLibManager();
        Deliver();
        EXPECT_EQ(CAddFolderThread::GetRunningCount(), 0);
    }

    static void Deliver() { PostQueue::Get().RunPending(); }

    // Stops the worker and waits until it has come to rest.
    static bool Finish() { return GetMediaLibManager()->StopWork(60'000); }

    // Runs the whole import on this thread.
    void RunHere(const String& folder)
    {
        CAddFolderThread import(window_.GetHandle(), u"mine", folder, nullptr);
        while (import.Run()) {
        }
    }
    void WriteFiles(const std::string& prefix, int count)
    {
        for (int i = 0; i < count; ++i) {
            const std::string name = prefix + std::to_string(100 + i) + ".wma";
            folder_.Write(name, "");
            attributes_.headers[folder_.GetPath(name)].SetText(u"Title", u"T");
        }
    }
    String GetCachedTitle(const std::string& name)
    {
        MediaInfo info;
        static_cast<void>(GetMediaLibManager()->PeekMediaInfo(folder_.GetPath(name), info));
        return GetInfoText(info, kInfoTitle);
    }

    test::FakeHost host_;
    test::ScriptedAttributes attributes_;
    test::TempFolder library_;
    test::TempFolder folder_;
    ImportWindow window_;
};

TEST_F(AddFolderThreadTest, PostsTheListOnceAllIsRead)
{
    WriteFiles("b/", 2);
    WriteFiles("z", 1);
    CAddFolderThread import(window_.GetHandle(), u"user\u4E2D", folder_.GetPath(), nullptr);
    while (import.Run()) {
        Deliver();
        EXPECT_TRUE(window_.lists.empty());
        EXPECT_EQ(CAddFolderThread::GetRunningCount(), 1);
    }
    Deliver();
    EXPECT_EQ(window_.groups, std::vector<String>{u"user\u4E2D"});
    const CStringArray expected = {
        folder_.GetPath("z100.wma"), folder_.GetPath("b/100.wma"), folder_.GetPath("b/101.wma")};
    EXPECT_EQ(window_.lists, std::vector<CStringArray>{expected});
    EXPECT_EQ(GetCachedTitle("b/101.wma"), u"T");
}

TEST_F(AddFolderThreadTest, PostsAListWhateverThereIsToRead)
{
    folder_.Write("empty/readme.txt", "");
    folder_.Write("unreadable/a.wma", "");
    for (const char* name : {"empty", "missing", "unreadable"})
        RunHere(folder_.GetPath(name));
    RunHere(u""); // No folder is no import.
    Deliver();
    const CStringArray unreadable = {folder_.GetPath("unreadable/a.wma")};
    EXPECT_EQ(window_.lists, (std::vector<CStringArray>{{}, {}, unreadable}));
}

TEST_F(AddFolderThreadTest, ASecondImportOpensNoFile)
{
    WriteFiles("", 30);
    RunHere(folder_.GetPath());
    EXPECT_EQ(attributes_.editorOpens, 30);
    RunHere(folder_.GetPath());
    EXPECT_EQ(attributes_.editorOpens, 30);
    Deliver();
    EXPECT_EQ(window_.lists.at(0), window_.lists.at(1));
}

TEST_F(AddFolderThreadTest, AWindowThatIsGoneGetsNothingAndNothingLeaks)
{
    WriteFiles("", 1);
    window_.DestroyWindow();
    RunHere(folder_.GetPath());
    EXPECT_EQ(CAddFolderThread::GetRunningCount(), 0);
}

TEST_F(AddFolderThreadTest, StoppedWhileItReadsItPostsTheWholeList)
{
    WriteFiles("", 20);
    attributes_.onOpen = [this](const String&) {
        if (attributes_.editorOpens == 3)
            GetMediaLibManager()->GetWorker()->RequestStop();
    };
    CAddFolderThread::Start(window_.GetHandle(), u"mine", folder_.GetPath());
    // The end of the import is what the message brings.
    while (window_.lists.empty())
        Deliver();
    EXPECT_TRUE(Finish());
    EXPECT_EQ(window_.lists.at(0).size(), 20U);
    EXPECT_EQ(attributes_.editorOpens, 3);
}

TEST_F(AddFolderThreadTest, StoppedBeforeItsTurnItPostsNothing)
{
    WriteFiles("", 1);
    CWorker worker;
    worker.RequestStop();
    CAddFolderThread import(window_.GetHandle(), u"mine", folder_.GetPath(), &worker);
    EXPECT_FALSE(import.Run());
    Deliver();
    EXPECT_TRUE(window_.lists.empty());
    EXPECT_EQ(attributes_.editorOpens, 0);
}

TEST_F(AddFolderThreadTest, WithoutAWorkerOrALibraryThereIsNoImport)
{
    EXPECT_TRUE(Finish());
    CAddFolderThread::Start(window_.GetHandle(), u"mine", folder_.GetPath());
    DestroyMediaLibManager();
    CAddFolderThread::Start(window_.GetHandle(), u"mine", folder_.GetPath());
    RunHere(folder_.GetPath());
    EXPECT_EQ(CAddFolderThread::GetRunningCount(), 0);
    Deliver();
    EXPECT_TRUE(window_.lists.empty());
}

class CallJob final : public IJob {
public:
    explicit CallJob(std::function<void()> call)
        : call_(std::move(call))
    {
    }
    bool RunSlice() override
    {
        call_();
        return false;
    }

private:
    std::function<void()> call_;
};

TEST_F(AddFolderThreadTest, ARowOnScreenComesBetweenTwoFiles)
{
    WriteFiles("", 20);
    std::atomic<int> seen = 0;
    attributes_.onOpen = [this, &seen](const String&) {
        if (attributes_.editorOpens == 5)
            GetMediaLibManager()->GetWorker()->Post(JobPriority::RowOnScreen,
                                                    std::make_unique<CallJob>([this, &seen] {
                                                        seen = attributes_.editorOpens.load();
                                                    }));
    };
    CAddFolderThread::Start(window_.GetHandle(), u"mine", folder_.GetPath());
    while (window_.lists.empty())
        Deliver();
    EXPECT_EQ(seen, 5);
    EXPECT_EQ(attributes_.editorOpens, 20);
}

// Two workers import while this thread reads, updates and delivers.
TEST_F(AddFolderThreadTest, TwoImportsRunBesideTheUserInterface)
{
    WriteFiles("a/", 60);
    WriteFiles("b/", 60);
    CWorker second;
    LXThread::ResumeThread(std::make_unique<CAddFolderThread>(
                               window_.GetHandle(), u"playing", folder_.GetPath(), &second),
                           &second,
                           JobPriority::FolderImport);
    CAddFolderThread::Start(window_.GetHandle(), u"mine", folder_.GetPath());
    for (int i = 0; window_.lists.size() < 2; i = (i + 1) % 60) {
        MediaInfo info;
        const String path = folder_.GetPath("a/" + std::to_string(100 + i) + ".wma");
        EXPECT_EQ(GetMediaLibManager()->GetMediaInfo(path, info), 1);
        GetMediaLibManager()->UpdateMediaInfo(path, Record(kInfoLength, u"216"), 1);
        Deliver();
    }
    EXPECT_EQ(window_.lists.at(0).size(), 120U);
    EXPECT_EQ(window_.lists.at(1), window_.lists.at(0));
    EXPECT_EQ(GetCachedTitle("b/159.wma"), u"T");
}

} // namespace
} // namespace kivo::tunehive
