#include "platform/qt/desktop_programs.h"

#include <gtest/gtest.h>

using velmora::qt::desktopProgram;

// The folder desktop/ beside this file is all that the desktop has.
TEST(DesktopPrograms, DefaultOfTheContentGoesBeforeTheCategory) {
    EXPECT_EQ(desktopProgram("text-editor")->id, "notes.desktop");
    EXPECT_EQ(desktopProgram("calculator")->id, "abacus.desktop");  // the hidden one before it does not count
}

TEST(DesktopPrograms, RoleThatNothingFitsHasNoProgramAndAnyOtherTextIsNoRole) {
    EXPECT_EQ(desktopProgram("audio-player")->id, "");
    EXPECT_EQ(desktopProgram("system-information")->document, QStringLiteral("/etc/os-release"));
    EXPECT_FALSE(desktopProgram("calc"));
    EXPECT_FALSE(desktopProgram(""));
}
