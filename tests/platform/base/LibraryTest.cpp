#include "shell/contracts/framework/Library.h"

#include "shell/contracts/common/AppPath.h"
#include "shell/contracts/common/Text.h"
#include "shell/contracts/control/MediaAttributes.h"
#include "shell/contracts/control/MediaEngine.h"
#include "shell/contracts/control/VideoSurface.h"
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

template <class Function>
Function Get(LibraryHandle library, const char* name)
{
    return reinterpret_cast<Function>(GetProcAddress(library, name));
}

TEST(Library, RunsItsApplicationFromLoadToUnload)
{
    const LibraryHandle library = LoadLibraryW(ModulePath());
    ASSERT_NE(library, nullptr);
    int ended = 0;
    EXPECT_EQ(Get<int (*)()>(library, "TestIsOfUse")(), 1);
    EXPECT_EQ(Get<int (*)()>(library, "TestUselessIsOfUse")(), 0);
    Get<void (*)(int*)>(library, "TestTellEnd")(&ended);
    EXPECT_EQ(GetProcAddress(library, "NoSuchName"), nullptr);
    EXPECT_EQ(FreeLibrary(library), 1);
    EXPECT_EQ(ended, 1);
    EXPECT_EQ(dlopen((kFolder + "libkivo_attributes.so").c_str(), RTLD_NOW | RTLD_NOLOAD), nullptr);
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
    Get<void (*)(int)>(library, "TestRefuse")(1);
    EXPECT_EQ(WMCreateEditor(), nullptr);
    Get<void (*)(int)>(library, "TestRefuse")(0);
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
