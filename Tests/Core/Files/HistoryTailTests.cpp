#include "Support/HistoryFolder.h"
#include "Support/HistoryRecords.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <fcntl.h>
#include <string>
#include <string_view>
#include <unistd.h>
#include <vector>

namespace tallyfox::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr std::size_t limit = LocalUsageScanner::tailSize;

using Lines = std::vector<std::string_view>;

struct ExpectedTail {
    Lines lines;
    bool isPartial = false;
};

/// The expected lines of a file with these bytes, step by step. Invalid UTF-8 is left unchanged: a cut can only cause
/// it in the first line, which is dropped.
ExpectedTail expectedTail(std::string_view file)
{
    const std::size_t offset = file.size() < limit ? 0 : file.size() - limit;
    const std::string_view data = file.substr(offset);
    ExpectedTail tail;
    std::size_t begin = 0;
    for (std::size_t end = 0; end < data.size(); ++end) {
        end = std::min(data.find('\n', end), data.size());
        if (end < data.size() && end > 0 && data[end - 1] == '\r')
            continue;
        if (end > begin)
            tail.lines.push_back(data.substr(begin, end - begin));
        begin = end + 1;
    }
    if (begin < data.size())
        tail.lines.push_back(data.substr(begin));
    tail.isPartial = file.size() > limit;
    if (tail.isPartial && !tail.lines.empty())
        tail.lines.erase(tail.lines.begin());
    return tail;
}

class HistoryTailTest : public HistoryFolder {
protected:
    /// The tail of the file, whose lines are valid until the next call.
    HistoryTail tailOf(const std::string& name)
    {
        const auto tail = m_reader.tailLines(openRoot(), name);
        EXPECT_EQ(errorOf(tail), std::error_code{});
        const auto* const read = std::get_if<HistoryTail>(&tail);
        return read != nullptr ? *read : HistoryTail{};
    }

    LocalUsageScanner::TailReader m_reader;
};

TEST_F(HistoryTailTest, emptyFileHasNoLines)
{
    write("a.jsonl");
    EXPECT_THAT(linesOf(tailOf("a.jsonl").lines), IsEmpty());
    EXPECT_FALSE(tailOf("a.jsonl").isPartial);
}

TEST_F(HistoryTailTest, shortFileIsReadWhole)
{
    write("a.jsonl", "one\n\ntwo");
    EXPECT_EQ(tailOf("a.jsonl").lines.text(), "one\n\ntwo");
    EXPECT_FALSE(tailOf("a.jsonl").isPartial);
}

TEST_F(HistoryTailTest, singleByteIsRead)
{
    write("a.jsonl", "1");
    EXPECT_EQ(linesOf(tailOf("a.jsonl").lines), Lines{"1"});
}

TEST_F(HistoryTailTest, fileOfExactlyTheLimitIsReadWhole)
{
    write("a.jsonl", "first\n" + std::string(limit - 11, 'x') + "\nlast");
    const HistoryTail tail = tailOf("a.jsonl");
    EXPECT_FALSE(tail.isPartial);
    EXPECT_EQ(linesOf(tail.lines), (Lines{"first", std::string(limit - 11, 'x'), "last"}));
}

TEST_F(HistoryTailTest, oneByteMoreDropsTheFirstLine)
{
    write("a.jsonl", "?first\n" + std::string(limit - 11, 'x') + "\nlast");
    const HistoryTail tail = tailOf("a.jsonl");
    EXPECT_TRUE(tail.isPartial);
    EXPECT_EQ(linesOf(tail.lines), (Lines{std::string(limit - 11, 'x'), "last"}));
}

TEST_F(HistoryTailTest, cutAtALineStartStillDropsThatLine)
{
    write("a.jsonl", "\n" + std::string(limit - 5, 'x') + "\nlast");
    EXPECT_EQ(linesOf(tailOf("a.jsonl").lines), Lines{"last"});
    write("b.jsonl", std::string(1000, 'y') + "\nfirst\n" + std::string(limit - 11, 'x') + "\nlast");
    EXPECT_EQ(linesOf(tailOf("b.jsonl").lines), (Lines{std::string(limit - 11, 'x'), "last"}));
}

TEST_F(HistoryTailTest, tailWithinOneLineIsEmpty)
{
    write("a.jsonl", std::string(limit + 1, 'x'));
    EXPECT_THAT(linesOf(tailOf("a.jsonl").lines), IsEmpty());
    EXPECT_TRUE(tailOf("a.jsonl").isPartial);
    write("b.jsonl", std::string(3 * limit, '\n'));
    EXPECT_THAT(linesOf(tailOf("b.jsonl").lines), IsEmpty());
    EXPECT_TRUE(tailOf("b.jsonl").isPartial);
}

TEST_F(HistoryTailTest, shorterFileAfterALongerOneShowsNothingOfIt)
{
    write("long.jsonl", std::string(limit, 'x') + "\nold\nold\nold");
    write("short.jsonl", "new");
    EXPECT_EQ(linesOf(tailOf("long.jsonl").lines).back(), "old");
    EXPECT_EQ(tailOf("short.jsonl").lines.text(), "new");
    EXPECT_FALSE(tailOf("short.jsonl").isPartial);
}

TEST_F(HistoryTailTest, sparseFileOfManyGigabytesIsReadAtItsEnd)
{
    write("a.jsonl");
    const FileDescriptor file(::open(at("a.jsonl").c_str(), O_WRONLY | O_CLOEXEC));
    constexpr off_t far = off_t{5} << 30;
    ASSERT_EQ(::pwrite(file.get(), "\nlast", 5, far), 5);
    const HistoryTail tail = tailOf("a.jsonl");
    EXPECT_EQ(linesOf(tail.lines), Lines{"last"});
    EXPECT_TRUE(tail.isPartial);
}

TEST_F(HistoryTailTest, bytesBeyondTheSizeTakenAreIgnored)
{
    // procfs reports size 0 for files that have content.
    const FileDescriptor processFolder = FileDescriptor::openFolder("/proc/self");
    ASSERT_TRUE(processFolder.isOpen());
    ASSERT_NE(readFile("/proc/self/status"), "");
    const auto tail = m_reader.tailLines(processFolder, "status");
    ASSERT_EQ(errorOf(tail), std::error_code{});
    EXPECT_EQ(std::get<HistoryTail>(tail).lines.text(), "");
}

TEST_F(HistoryTailTest, fileThatEndsBeforeItsSizeIsReadToItsEnd)
{
    // sysfs reports 4096 bytes for files that have a few.
    const std::filesystem::path folder = "/sys/devices/system/cpu";
    std::error_code error;
    if (std::filesystem::file_size(folder / "online", error) != 4096)
        GTEST_SKIP() << "this system has no file whose size is a lie";
    const auto tail = m_reader.tailLines(FileDescriptor::openFolder(folder.c_str()), "online");
    ASSERT_EQ(errorOf(tail), std::error_code{});
    EXPECT_EQ(std::get<HistoryTail>(tail).lines.text(), readFile(folder / "online"));
    EXPECT_NE(std::get<HistoryTail>(tail).lines.text(), "");
}

/// A file that grows byte by byte, so that the cut moves over the text around byte `reach`.
struct Boundary {
    const char* name;
    std::string_view around; ///< at byte `reach` of the file, between long lines
    std::string_view end; ///< appended repeatedly, each time after a long line
};

void PrintTo(const Boundary& boundary, std::ostream* out)
{
    *out << boundary.name;
}

class HistoryTailBoundary : public HistoryTailTest, public testing::WithParamInterface<Boundary> {
protected:
    static constexpr std::size_t reach = 4096;

    [[nodiscard]] static std::string smallestFile()
    {
        const std::string content = std::string(reach, 'x') + std::string(GetParam().around);
        return content + std::string(limit - reach - content.size(), 'y');
    }

    [[nodiscard]] static std::string appendix()
    {
        std::string text;
        while (text.size() <= 3 * reach)
            text += std::string(GetParam().end) + std::string(1000, 'z');
        return text;
    }
};

TEST_P(HistoryTailBoundary, everyOffsetGivesTheLinesOfTheWholeFile)
{
    std::string content = smallestFile();
    content.reserve(limit + 2 * reach + 1);
    write("a.jsonl", content);
    const FileDescriptor file(::open(at("a.jsonl").c_str(), O_WRONLY | O_APPEND | O_CLOEXEC));
    const FileDescriptor folder = openRoot();
    const std::string rest = appendix();
    std::size_t partials = 0;
    for (std::size_t step = 0; step <= 3 * reach; ++step) {
        const auto result = m_reader.tailLines(folder, "a.jsonl");
        ASSERT_EQ(errorOf(result), std::error_code{});
        const HistoryTail& tail = std::get<HistoryTail>(result);
        const ExpectedTail expected = expectedTail(content);
        ASSERT_EQ(tail.isPartial, expected.isPartial) << content.size();
        const Lines lines = linesOf(tail.lines);
        ASSERT_TRUE(lines == expected.lines) << "a file of " << content.size() << " bytes";
        partials += tail.isPartial ? 1 : 0;
        ASSERT_EQ(::write(file.get(), &rest[step], 1), 1);
        content += rest[step];
    }
    EXPECT_EQ(partials, 2 * reach);
}

constexpr Boundary boundaries[] = {
    {"lineStart", "\nline\nof a text\n", "\nline\n"},
    {"blankLines", "\n\nx\n\n\n", "\n\n"},
    {"multiByteCharacter", "\xF0\x9F\xA6\x8A\xE2\x82\xAC\n\xC3\xA9", "\n"},
    {"carriageReturnLineFeed", "\r\nof a\r\n\ntext\r\n\r\n", "\r\n"},
    {"noFinalLineFeed", "\na line\n", "z"},
};

INSTANTIATE_TEST_SUITE_P(Kinds, HistoryTailBoundary, testing::ValuesIn(boundaries),
                         [](const auto& parameter) { return std::string(parameter.param.name); });

} // namespace
} // namespace tallyfox::test
