// Pure logic of the utilities bindings: the simulator's path form and reading a directory
// listing's index table without ever leaving the name buffer.
#include <gtest/gtest.h>

#include <cstring>
#include <string>
#include <vector>

#include "NativePaths.h"

TEST(SimPathForm, ColonSimulatorsGetColonsAndOthersThePathAsItIs) {
    EXPECT_EQ(CV_PathToSimForm("/a/b/c.txt", ':'), ":a:b:c.txt");
    EXPECT_EQ(CV_PathToSimForm("HD/Apps/X-Plane/", ':'), "HD:Apps:X-Plane:");
    EXPECT_EQ(CV_PathToSimForm("no separators", ':'), "no separators");
    EXPECT_EQ(CV_PathToSimForm("/a/b/c.txt", '/'), "/a/b/c.txt");
    EXPECT_EQ(CV_PathToSimForm("C:\\a/b", '\\'), "C:\\a/b");
    EXPECT_EQ(CV_PathToSimForm("", ':'), "");
}

TEST(DirectoryIndices, NamesAreReadOnlyInsideTheBufferAndUpToTheCounts) {
    // "a.txt\0bb\0ccc\0" followed by two spare bytes, as the simulator fills it.
    char buffer[16] = {};
    std::memcpy(buffer, "a.txt\0bb\0ccc\0", 13);
    char* indices[4] = {buffer, buffer + 6, buffer + 9, nullptr};
    const size_t size = sizeof buffer;

    EXPECT_EQ(CV_NamesFromIndices(buffer, size, indices, 4, 3), (std::vector<std::string>{"a.txt", "bb", "ccc"}));
    // The returned count is taken between 0 and the index count.
    EXPECT_EQ(CV_NamesFromIndices(buffer, size, indices, 2, 3), (std::vector<std::string>{"a.txt", "bb"}));
    EXPECT_TRUE(CV_NamesFromIndices(buffer, size, indices, 4, -1).empty());
    EXPECT_TRUE(CV_NamesFromIndices(buffer, size, indices, 0, 3).empty());
    // A null index ends the list.
    EXPECT_EQ(CV_NamesFromIndices(buffer, size, indices, 4, 4), (std::vector<std::string>{"a.txt", "bb", "ccc"}));
    EXPECT_TRUE(CV_NamesFromIndices(buffer, size, nullptr, 4, 3).empty());
    EXPECT_TRUE(CV_NamesFromIndices(nullptr, size, indices, 4, 3).empty());

    // An index outside the buffer ends the list; one at its very end is outside.
    char outside[4] = "xyz";
    char* wild[3] = {buffer + 6, outside, buffer};
    EXPECT_EQ(CV_NamesFromIndices(buffer, size, wild, 3, 3), (std::vector<std::string>{"bb"}));
    char* atEnd[1] = {buffer + size};
    EXPECT_TRUE(CV_NamesFromIndices(buffer, size, atEnd, 1, 1).empty());

    // A name without a terminator stops at the end of the buffer.
    char full[4] = {'a', 'b', 'c', 'd'};
    char* last[2] = {full, full + 2};
    EXPECT_EQ(CV_NamesFromIndices(full, sizeof full, last, 2, 2), (std::vector<std::string>{"abcd", "cd"}));
}
