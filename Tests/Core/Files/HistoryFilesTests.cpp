#include "Support/HeapWatch.h"
#include "Support/HistoryFolder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cerrno>
#include <climits>
#include <fcntl.h>
#include <string>
#include <sys/stat.h>
#include <unistd.h>
#include <vector>

namespace tallyfox::test {
namespace {

using testing::ElementsAre;
using testing::ElementsAreArray;
using testing::IsEmpty;
using testing::UnorderedElementsAre;

using HistoryFilesTest = HistoryFolder;

std::string numbered(int number)
{
    return std::to_string(number) + ".jsonl";
}

TEST_F(HistoryFilesTest, emptyFolderHasNone)
{
    EXPECT_THAT(files().paths, IsEmpty());
    EXPECT_FALSE(files().isPartial);
}

TEST_F(HistoryFilesTest, newestComeFirst)
{
    write("middle.jsonl", "", 20);
    write("oldest.jsonl", "", 30);
    write("newest.jsonl", "", 10);
    EXPECT_THAT(files().paths, ElementsAre("newest.jsonl", "middle.jsonl", "oldest.jsonl"));
}

TEST_F(HistoryFilesTest, nanosecondsDecideWithinASecond)
{
    for (const int nanoseconds : {2, 1, 3}) {
        write(numbered(nanoseconds));
        setAge(numbered(nanoseconds), 0, nanoseconds);
    }
    EXPECT_THAT(files().paths, ElementsAre("3.jsonl", "2.jsonl", "1.jsonl"));
}

TEST_F(HistoryFilesTest, timesBefore1970AreTheOldest)
{
    write("new.jsonl", "", 10);
    write("ancient.jsonl");
    setAge("ancient.jsonl", 1'795'254'067 + 86'400, 5);
    EXPECT_THAT(files().paths, ElementsAre("new.jsonl", "ancient.jsonl"));
}

TEST_F(HistoryFilesTest, onlyTheExactExtensionCounts)
{
    for (const char* name : {"a.JSONL", "b.Jsonl", "c.jsonl.bak", "d.json", "ejsonl", "jsonl", "f.jsonl ", "g.jsonl~"})
        write(name);
    write("right.jsonl");
    write("two.dots..jsonl");
    EXPECT_THAT(files().paths, UnorderedElementsAre("right.jsonl", "two.dots..jsonl"));
}

TEST_F(HistoryFilesTest, hiddenFilesAndHiddenFoldersAreSkipped)
{
    for (const char* name : {".jsonl", ".hidden.jsonl", ".folder/a.jsonl", ".folder/inside/b.jsonl", "open/.c.jsonl"})
        write(name);
    write("open/seen.jsonl");
    EXPECT_THAT(files().paths, ElementsAre("open/seen.jsonl"));
}

TEST_F(HistoryFilesTest, hiddenRootIsScanned)
{
    write(".codex/sessions/a.jsonl");
    const FileDescriptor hidden = FileDescriptor::openFolder(at(".codex").c_str());
    EXPECT_THAT(LocalUsageScanner::jsonlFiles(hidden).paths, ElementsAre("sessions/a.jsonl"));
}

TEST_F(HistoryFilesTest, foldersNamedLikeFilesAreEnteredAndNotListed)
{
    makeFolder("empty.jsonl");
    write("full.jsonl/inner.jsonl");
    write("bundle.app/packed.jsonl");
    EXPECT_THAT(files().paths, UnorderedElementsAre("full.jsonl/inner.jsonl", "bundle.app/packed.jsonl"));
}

TEST_F(HistoryFilesTest, ageCountsAcrossFolders)
{
    write("a/b/c/three.jsonl", "", 3);
    write("one.jsonl", "", 1);
    write("z/four.jsonl", "", 4);
    write("a/two.jsonl", "", 2);
    EXPECT_THAT(files().paths, ElementsAre("one.jsonl", "a/two.jsonl", "a/b/c/three.jsonl", "z/four.jsonl"));
}

TEST_F(HistoryFilesTest, fileMayHaveAnyNameBeforeTheExtension)
{
    const std::vector<std::string> names{
        "line\nfeed.jsonl", "bad\xFF\xC3.jsonl",         "\x1B[1m.jsonl",
        "-rf *;.jsonl",     "fox\xF0\x9F\xA6\x8A.jsonl", std::string(NAME_MAX - 6, 'x') + ".jsonl"};
    for (const std::string& name : names)
        write("in\n\xFE" / std::filesystem::path(name));
    std::vector<std::string> expected;
    for (const std::string& name : names)
        expected.push_back("in\n\xFE/" + name);
    EXPECT_THAT(files().paths, testing::UnorderedElementsAreArray(expected));
}

TEST_F(HistoryFilesTest, linksAreNotFollowed)
{
    write("real/file.jsonl");
    std::filesystem::create_symlink("real/file.jsonl", at("link.jsonl"));
    std::filesystem::create_directory_symlink("real", at("folder"));
    std::filesystem::create_directory_symlink(".", at("loop"));
    std::filesystem::create_symlink("nowhere", at("dangling.jsonl"));
    EXPECT_THAT(files().paths, ElementsAre("real/file.jsonl"));
}

TEST_F(HistoryFilesTest, rootThatIsALinkIsFollowed)
{
    write("real/file.jsonl");
    std::filesystem::create_directory_symlink("real", at("root"));
    const FileDescriptor linked = FileDescriptor::openFolder(at("root").c_str());
    ASSERT_TRUE(linked.isOpen());
    EXPECT_THAT(LocalUsageScanner::jsonlFiles(linked).paths, ElementsAre("file.jsonl"));
}

TEST_F(HistoryFilesTest, anythingButARegularFileIsSkipped)
{
    ASSERT_EQ(::mkfifo(at("pipe.jsonl").c_str(), 0600), 0);
    write("file.jsonl");
    EXPECT_THAT(files().paths, ElementsAre("file.jsonl"));
}

class HistoryFileCount : public HistoryFolder, public testing::WithParamInterface<int> { };

TEST_P(HistoryFileCount, atMost256NewestAreKeptAndMoreMakeThePartialFlag)
{
    // Listed in an order other than by age, so that every file has to be sorted in.
    for (int number = 0; number < GetParam(); ++number)
        write(std::to_string(number % 7) + '/' + numbered(number), "", number * 101 % 1009);
    std::vector<std::string> expected;
    std::vector<int> numbers(static_cast<std::size_t>(GetParam()));
    for (int number = 0; number < GetParam(); ++number)
        numbers[static_cast<std::size_t>(number)] = number;
    std::ranges::sort(numbers, {}, [](int number) { return number * 101 % 1009; });
    for (const int number : numbers)
        expected.push_back(std::to_string(number % 7) + '/' + numbered(number));
    expected.resize(std::min<std::size_t>(expected.size(), 256));
    EXPECT_THAT(files().paths, ElementsAreArray(expected));
    EXPECT_EQ(files().isPartial, GetParam() > 256);
}

INSTANTIATE_TEST_SUITE_P(AroundTheBound, HistoryFileCount, testing::Values(1, 255, 256, 257, 300));

TEST_F(HistoryFilesTest, equallyOldFilesKeepTheOrderInWhichTheFolderListsThem)
{
    for (int number = 0; number < 300; ++number)
        write(numbered(number));
    std::vector<std::string> listed;
    for (const auto& entry : std::filesystem::directory_iterator(root()))
        listed.push_back(entry.path().filename());
    listed.resize(256);
    EXPECT_THAT(files().paths, ElementsAreArray(listed));
    EXPECT_TRUE(files().isPartial);
}

TEST_F(HistoryFilesTest, onlyHistoryFilesCountForThePartialFlag)
{
    for (int number = 0; number < 256; ++number)
        write(numbered(number));
    for (int number = 0; number < 10; ++number) {
        write('.' + numbered(number));
        makeFolder("folder" + numbered(number));
        std::filesystem::create_symlink("0.jsonl", at("link" + numbered(number)));
    }
    EXPECT_EQ(files().paths.size(), 256U);
    EXPECT_FALSE(files().isPartial);
}

TEST_F(HistoryFilesTest, memoryDoesNotGrowWithTheNumberOfFiles)
{
    constexpr int count = 20'000;
    const std::string longName(200, 'n');
    const FileDescriptor folder = openRoot();
    for (int number = 0; number < count; ++number) {
        const FileDescriptor file(
            ::openat(folder.get(), (longName + numbered(number)).c_str(), O_CREAT | O_WRONLY | O_CLOEXEC, 0600));
        ASSERT_TRUE(file.isOpen());
    }
    const HeapWatch watch;
    const HistoryFiles found = LocalUsageScanner::jsonlFiles(folder);
    EXPECT_LT(watch.peak(), 256U * 1024) << "for names of " << count * longName.size() << " bytes";
    EXPECT_GT(watch.peak(), 256 * longName.size()) << "the measurement would prove nothing";
    EXPECT_EQ(found.paths.size(), 256U);
    EXPECT_TRUE(found.isPartial);
}

TEST_F(HistoryFilesTest, pathIsSplitAtTheSystemsLimit)
{
    write("a.jsonl", "one");
    std::string path = "a.jsonl";
    while (path.size() < 3 * std::size_t{PATH_MAX})
        path.insert(0, "./");
    LocalUsageScanner::TailReader reader;
    for (const auto* begin : {"", ".//"}) { // a separator at the last position that fits, and at the next
        const auto tail = reader.tailLines(openRoot(), begin + path);
        ASSERT_EQ(errorOf(tail), std::error_code{}) << begin;
        EXPECT_EQ(std::get<HistoryTail>(tail).lines.text(), "one");
    }
}

/// Folders nested so deeply that the path is longer than PATH_MAX.
class DeepHistory : public HistoryFolder {
protected:
    static constexpr int depth = 1000;

    DeepHistory()
        : m_deepest(openRoot())
    {
        for (int level = 0; level < depth; ++level) {
            ::mkdirat(m_deepest.get(), name(level).c_str(), 0700);
            enter(name(level));
        }
    }
    ~DeepHistory() override
    {
        ::unlinkat(m_deepest.get(), "deep.jsonl", 0);
        for (int level = depth - 1; level >= 0; --level) {
            enter("..");
            ::unlinkat(m_deepest.get(), name(level).c_str(), AT_REMOVEDIR);
        }
    }

    [[nodiscard]] const FileDescriptor& deepest() const
    {
        return m_deepest;
    }
    [[nodiscard]] static std::string deepPath()
    {
        std::string path;
        for (int level = 0; level < depth; ++level)
            path += name(level) + '/';
        return path + "deep.jsonl";
    }

private:
    static std::string name(int level)
    {
        return std::to_string(level) + "-nested-folder";
    }

    void enter(const std::string& folder)
    {
        m_deepest = FileDescriptor(::openat(m_deepest.get(), folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    }

    FileDescriptor m_deepest;
};

TEST_F(DeepHistory, fileInAThousandFoldersIsFoundAndRead)
{
    {
        const FileDescriptor file(::openat(deepest().get(), "deep.jsonl", O_CREAT | O_WRONLY | O_CLOEXEC, 0600));
        ASSERT_EQ(::write(file.get(), "one\ntwo", 7), 7);
    }
    const std::size_t descriptors = openDescriptors();
    const FileDescriptor folder = openRoot();
    const HistoryFiles found = LocalUsageScanner::jsonlFiles(folder);
    ASSERT_THAT(found.paths, ElementsAre(deepPath()));
    LocalUsageScanner::TailReader reader;
    const auto tail = reader.tailLines(folder, found.paths.front());
    ASSERT_EQ(errorOf(tail), std::error_code{});
    EXPECT_EQ(std::get<HistoryTail>(tail).lines.text(), "one\ntwo");
    EXPECT_EQ(openDescriptors(), descriptors + 1) << "the root alone";
}

TEST_F(DeepHistory, linkInALongPathIsNotFollowed)
{
    std::filesystem::create_directory_symlink(root(), at("link"));
    const FileDescriptor folder = openRoot();
    LocalUsageScanner::TailReader reader;
    EXPECT_EQ(errorOf(reader.tailLines(folder, "link/" + deepPath())), std::errc::too_many_symbolic_link_levels);
}

} // namespace
} // namespace tallyfox::test
