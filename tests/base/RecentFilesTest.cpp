// SPDX-License-Identifier: GPL-2.0-or-later
#include "base/RecentFiles.h"

#include "base/Settings.h"
#include "tests/support/MemorySettings.h"

#include <gmock/gmock.h>

using namespace velmora;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

namespace {
struct RecentFilesTest : testing::Test {
    MemorySettings settings;
    RecentFiles recent{settings};
};
} // namespace

TEST_F(RecentFilesTest, TheNewestStandsFirstAndEachOnce) {
    EXPECT_THAT(recent.files(), IsEmpty());
    for (const char* file : {"/a.sng", "/b.sng", "/c.sng", "/a.sng"})
        recent.add(file);
    EXPECT_THAT(recent.files(), ElementsAre("/a.sng", "/c.sng", "/b.sng"));
    EXPECT_THAT(RecentFiles(settings).files(), ElementsAre("/a.sng", "/c.sng", "/b.sng")) << "the next start";
}

TEST_F(RecentFilesTest, EightAreKept) {
    for (int file = 1; file <= 9; ++file)
        recent.add("/" + std::to_string(file));
    EXPECT_THAT(recent.files(), SizeIs(8));
    EXPECT_EQ(recent.files().front(), "/9");
    EXPECT_EQ(recent.files().back(), "/2");
}

TEST_F(RecentFilesTest, OneThatLeavesMakesRoom) {
    for (const char* file : {"/a", "/b", "/c"})
        recent.add(file);
    recent.remove("/b");
    recent.remove("/nowhere");
    EXPECT_THAT(recent.files(), ElementsAre("/c", "/a"));
}

TEST_F(RecentFilesTest, ABlankNameIsNone) {
    recent.add("");
    EXPECT_THAT(recent.files(), IsEmpty());
    settings::save(settings, settings::kRecentFiles[3], "/late");
    EXPECT_THAT(recent.files(), ElementsAre("/late")) << "a gap in the settings is passed over";
}
