#include "shell/contracts/framework/Library.h"

#include "shell/contracts/common/AppPath.h"
#include "shell/contracts/common/Text.h"
#include "shell/contracts/control/MediaAttributes.h"
#include "shell/contracts/control/MediaEngine.h"
#include "shell/contracts/control/VideoSurface.h"
#include "shell/contracts/framework/WinApp.h"
#include "tests/support/TempFolder.h"

#include <dlfcn.h>
#include <gtest/gtest.h>

namespace kivo {
namespace {

// Where the build puts libkivo_attributes.so, the library of these tests; ends in a separator.
const std::string kFolder = KIVO_TEST_MODULE_FOLDER;

String ModulePath()
{
    return common::PathToText(kFolder + "libkivo_attributes.so");
}

TEST(Library, IsThereFromLoadToUnload)
{
    const LibraryHandle library = LoadLibraryW(ModulePath());
    ASSERT_NE(library, nullptr);
    EXPECT_NE(GetProcAddress(library, "TestRefuse"), nullptr);
    EXPECT_EQ(GetProcAddress(library, "NoSuchName"), nullptr);
    EXPECT_EQ(FreeLibrary(library), 1);
    EXPECT_EQ(dlopen((kFolder + "libkivo_attributes.so").c_str(), RTLD_NOW | RTLD_NOLOAD), nullptr);
}

TEST(AppRun, StartsAndEndsTheApplicationAndKnowsWhetherItIsOfUse)
{
    struct App final : CWinApp {
        int InitInstance() override { return result; }
        int ExitInstance() override { return ++ended; }
        int result = 0;
        int ended = 0;
    } app;
    EXPECT_FALSE(AppRun(app).IsOfUse());
    app.result = 1;
    EXPECT_TRUE(AppRun(app).IsOfUse());
    EXPECT_EQ(app.ended, 2);
}

TEST(Library, WhatCantBeLoadedIsNull)
{
    const test::TempFolder folder;
    folder.Write("text.so", "no library");
    EXPECT_EQ(LoadLibraryW(folder.GetPath("text.so")), nullptr);
    EXPECT_EQ(LoadLibraryW(folder.GetPath("missing.so")), nullptr);
    EXPECT_EQ(LoadLibraryW(u""), nullptr); // For dlopen that is the program itself.
    EXPECT_EQ(LoadLibraryW(ModulePath() + u'\0'), nullptr);
    EXPECT_EQ(GetProcAddress(nullptr, "main"), nullptr);
    EXPECT_EQ(FreeLibrary(nullptr), 0);
}

IWMMetadataEditor* MakeNoEditor()
{
    return nullptr;
}

TEST(Controls, ComeFromTheModuleUnlessATestGivesItsOwn)
{
    common::SetAppPath(u"/nowhere/");
    EXPECT_EQ(WMCreateEditor(), nullptr);
    EXPECT_EQ(CreateMediaEngine(), nullptr);

    common::SetAppPath(common::PathToText(kFolder)); // Found now, and from here on it stays.
    EXPECT_NE(WMCreateEditor(), nullptr);
    EXPECT_EQ(WMCreateReader(), nullptr); // In another module, which isn't there.
    const LibraryHandle library = LoadLibraryW(ModulePath());
    const auto refuse = reinterpret_cast<void (*)(int)>(GetProcAddress(library, "TestRefuse"));
    refuse(1);
    EXPECT_EQ(WMCreateEditor(), nullptr);
    refuse(0);
    EXPECT_EQ(FreeLibrary(library), 1);
    EXPECT_NE(WMCreateEditor(), nullptr); // The module holds itself.

    SetMediaAttributeMakers({MakeNoEditor, nullptr});
    EXPECT_EQ(WMCreateEditor(), nullptr);
    SetMediaAttributeMakers({});
    EXPECT_NE(WMCreateEditor(), nullptr);

    int made = 0;
    SetMediaEngineFactory([&made] {
        ++made;
        return nullptr;
    });
    EXPECT_EQ(CreateMediaEngine(), nullptr);
    EXPECT_EQ(made, 1);
    SetMediaEngineFactory({});
    EXPECT_EQ(CreateMediaEngine(), nullptr);
    EXPECT_EQ(made, 1);
}

} // namespace
} // namespace kivo
