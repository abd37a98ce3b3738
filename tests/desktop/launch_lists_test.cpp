#include "desktop/launch_lists.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "base/text.h"
#include "desktop/execute.h"
#include "desktop/web_search.h"
#include "tests/support/in_memory_files.h"

namespace velmora {
namespace {

using testing::Each;

std::string numberedLines(int count, const std::string& lineEnd) {
    std::string text;
    for (int number = 1; number <= count; ++number) text += std::to_string(number) + lineEnd;
    return text;
}

TEST(LaunchLines, LastBlockWinsWhateverTheLengthAndTheLineEnds) {
    struct Case {
        int lines;
        std::string first, second, last;
    };
    const std::vector<Case> cases{
        {0, "", "", ""},        {1, "1", "", ""},
        {19, "1", "2", ""},     {20, "1", "2", "20"},
        {21, "21", "2", "20"},  // the short second block leaves the rest of the first
        {40, "21", "22", "40"}, {10000, "9981", "9982", "10000"},
    };
    for (const auto& [count, first, second, last] : cases) {
        for (const char* lineEnd : {"\r\n", "\n", "\r"}) {
            const LaunchLines lines = readLaunchLines(numberedLines(count, lineEnd));
            EXPECT_EQ(lines[0], first) << count;
            EXPECT_EQ(lines[1], second) << count;
            EXPECT_EQ(lines[19], last) << count;
        }
    }
}

TEST(LaunchLines, AnyBytesStayAsTheyAre) {
    const std::string zeros(3, '\0');
    const std::string mega(1 << 20, 'x');
    const LaunchLines lines = readLaunchLines(zeros + "\n" + mega + "\n\xff");
    EXPECT_EQ(lines[0], zeros);
    EXPECT_EQ(lines[1], mega);
    EXPECT_EQ(lines[2], "\xff");
    EXPECT_EQ(readLaunchLines(launchFileText(lines)), lines);
}

TEST(LaunchLines, FileHasTwentyLinesWhateverTheRowsHold) {
    LaunchLines lines;
    lines.fill("a\r\nb\n");
    const std::string text = launchFileText(lines);
    EXPECT_EQ(splitLines(text).size(), 20U);
    EXPECT_THAT(readLaunchLines(text), Each("a  b "));
}

TEST(FileExists, TakesOnlyThePlainFileOfThatVeryName) {
    InMemoryFiles files;
    files.put("/home/Office.txt", "");
    files.put("/home/folder/x", "");
    files.put("/top", "");
    for (const char* there : {"/home/Office.txt", "/top"}) EXPECT_TRUE(FileExists(files, there)) << there;
    for (const char* absent : {"/home/fice.txt", "/home/*.txt", "/home/", "/home/folder", "/none/x", ""})
        EXPECT_FALSE(FileExists(files, absent)) << absent;
}

TEST(GetToken, CountsPiecesFromOne) {
    struct Case {
        std::string text;
        int index;
        std::string piece;
    };
    for (const auto& [text, index, piece] :
         {Case{"a||b", 1, "a"}, Case{"a||b", 2, ""}, Case{"a||b", 3, "b"}, Case{"a||b", 4, ""},
          Case{"a||b", 0, ""}, Case{"a||b", -1, ""}, Case{"", 1, ""}, Case{"|a", 2, "a"}}) {
        EXPECT_EQ(GetToken(text, '|', index), piece) << text << " " << index;
    }
}

}  // namespace
}  // namespace velmora
