#include "Support/HistoryFolder.h"
#include "Support/HistoryRecords.h"
#include "Support/Unprivileged.h"
#include "TallyfoxCore/Files/LocalUsageScanner.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <cstring>
#include <functional>
#include <optional>
#include <string>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/sysmacros.h>
#include <sys/un.h>
#include <unistd.h>

/// Scans of files that change between listing and reading, or that may not be read.
namespace tallyfox::test {
namespace {

namespace fs = std::filesystem;

class HistoryFaults : public HistoryFolder {
protected:
    /// Lists the one file of the folder, calls `change`, then reads the listed file. Checks that no descriptor leaks.
    std::error_code errorAfter(const std::function<void()>& change)
    {
        const std::size_t descriptors = openDescriptors();
        const std::error_code error = readAfter(change);
        EXPECT_EQ(openDescriptors(), descriptors);
        return error;
    }

    /// A file with one record.
    void writeHistory(const fs::path& name) const
    {
        write(name, claudeLine() + '\n');
    }

    /// The result of the last reading.
    std::string m_text;

private:
    std::error_code readAfter(const std::function<void()>& change)
    {
        const FileDescriptor folder = openRoot();
        const HistoryFiles found = LocalUsageScanner::jsonlFiles(folder);
        EXPECT_EQ(found.paths.size(), 1U);
        change();
        LocalUsageScanner::TailReader reader;
        const auto tail = reader.tailLines(folder, found.paths.at(0));
        if (const auto* const read = std::get_if<HistoryTail>(&tail))
            m_text = read->lines.text();
        return errorOf(tail);
    }
};

/// Leaves a socket in the folder; it outlives its listener.
void makeSocket(const fs::path& path)
{
    const FileDescriptor socket(::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0));
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    ASSERT_LT(path.native().size(), sizeof address.sun_path);
    std::strncpy(address.sun_path, path.c_str(), sizeof address.sun_path - 1);
    ASSERT_EQ(::bind(socket.get(), reinterpret_cast<const sockaddr*>(&address), sizeof address), 0);
}

TEST_F(HistoryFaults, unchangedFileIsRead)
{
    writeHistory("a/b.jsonl");
    EXPECT_EQ(errorAfter([] {}), std::error_code{});
    EXPECT_EQ(m_text, claudeLine() + '\n');
}

TEST_F(HistoryFaults, removedFileFails)
{
    writeHistory("a/b.jsonl");
    EXPECT_EQ(errorAfter([this] { fs::remove(at("a/b.jsonl")); }), std::errc::no_such_file_or_directory);
}

TEST_F(HistoryFaults, removedFolderFails)
{
    writeHistory("a/b.jsonl");
    EXPECT_EQ(errorAfter([this] { fs::remove_all(at("a")); }), std::errc::no_such_file_or_directory);
}

TEST_F(HistoryFaults, folderReplacedByAFileFails)
{
    writeHistory("a/b.jsonl");
    const auto error = errorAfter([this] {
        fs::remove_all(at("a"));
        write("a");
    });
    EXPECT_EQ(error, std::errc::not_a_directory);
}

TEST_F(HistoryFaults, truncatedFileIsReadAsItIsNow)
{
    writeHistory("a.jsonl");
    EXPECT_EQ(errorAfter([this] { fs::resize_file(at("a.jsonl"), 5); }), std::error_code{});
    EXPECT_EQ(m_text, claudeLine().substr(0, 5));
    EXPECT_EQ(errorAfter([this] { fs::resize_file(at("a.jsonl"), 0); }), std::error_code{});
    EXPECT_EQ(m_text, "");
}

TEST_F(HistoryFaults, longerFileIsReadAsItIsNow)
{
    writeHistory("a.jsonl");
    EXPECT_EQ(errorAfter([this] { write("a.jsonl", "grown\n" + claudeLine()); }), std::error_code{});
    EXPECT_EQ(m_text, "grown\n" + claudeLine());
}

TEST_F(HistoryFaults, pipeInPlaceOfTheFileFailsWithoutWaitingForAWriter)
{
    writeHistory("a.jsonl");
    const auto error = errorAfter([this] {
        fs::remove(at("a.jsonl"));
        ASSERT_EQ(::mkfifo(at("a.jsonl").c_str(), 0600), 0);
    });
    EXPECT_EQ(error, std::errc::not_supported);
}

TEST_F(HistoryFaults, socketInPlaceOfTheFileFails)
{
    writeHistory("a.jsonl");
    const auto error = errorAfter([this] {
        fs::remove(at("a.jsonl"));
        makeSocket(at("a.jsonl"));
    });
    EXPECT_EQ(error, std::errc::no_such_device_or_address);
}

TEST_F(HistoryFaults, deviceInPlaceOfTheFileFails)
{
    if (::mknod(at("device").c_str(), S_IFCHR | 0666, makedev(1, 5)) != 0)
        GTEST_SKIP() << "this user may not make device nodes";
    writeHistory("a.jsonl");
    const auto error = errorAfter([this] { fs::rename(at("device"), at("a.jsonl")); });
    // The file system may be mounted with "nodev".
    EXPECT_TRUE(error == std::errc::not_supported || error == std::errc::permission_denied) << error.message();
}

TEST_F(HistoryFaults, folderInPlaceOfTheFileFails)
{
    writeHistory("a.jsonl");
    const auto error = errorAfter([this] {
        fs::remove(at("a.jsonl"));
        makeFolder("a.jsonl");
    });
    EXPECT_EQ(error, std::errc::not_supported);
}

TEST_F(HistoryFaults, linkInPlaceOfTheFileIsNotFollowed)
{
    writeHistory("a.jsonl");
    const auto error = errorAfter([this] {
        fs::rename(at("a.jsonl"), at("elsewhere"));
        fs::create_symlink("elsewhere", at("a.jsonl"));
    });
    EXPECT_EQ(error, std::errc::too_many_symbolic_link_levels);
}

TEST_F(HistoryFaults, linkInPlaceOfAFolderIsNotFollowed)
{
    writeHistory("a/b.jsonl");
    const auto error = errorAfter([this] {
        fs::rename(at("a"), at("elsewhere"));
        fs::create_directory_symlink("elsewhere", at("a"));
    });
    EXPECT_EQ(error, std::errc::too_many_symbolic_link_levels);
}

TEST_F(HistoryFaults, linkLoopInPlaceOfTheFileFails)
{
    writeHistory("a.jsonl");
    const auto error = errorAfter([this] {
        fs::remove(at("a.jsonl"));
        fs::create_symlink("other.jsonl", at("a.jsonl"));
        fs::create_symlink("a.jsonl", at("other.jsonl"));
    });
    EXPECT_EQ(error, std::errc::too_many_symbolic_link_levels);
}

TEST_F(HistoryFaults, missingRootHasNoHistory)
{
    const std::size_t descriptors = openDescriptors();
    for (const Provider provider : allProviders)
        EXPECT_EQ(std::get<0>(LocalUsageScanner::scanResult(provider, at("missing"))), LocalUsageScanResult{});
    EXPECT_EQ(openDescriptors(), descriptors);
}

TEST_F(HistoryFaults, fileAsRootHasNoHistory)
{
    writeHistory("file.jsonl");
    ASSERT_EQ(::mkfifo(at("pipe").c_str(), 0600), 0);
    fs::create_symlink("loop", at("loop"));
    const std::size_t descriptors = openDescriptors();
    for (const char* name : {"file.jsonl", "file.jsonl/below", "pipe", "loop"}) {
        const auto result = LocalUsageScanner::scanResult(Provider::claude, at(name));
        EXPECT_EQ(std::get<0>(result), LocalUsageScanResult{}) << name;
    }
    EXPECT_EQ(openDescriptors(), descriptors);
}

/// Scans "root" as a user without privileges. The error, or 100 plus the number of samples.
class UnreadableHistory : public HistoryFaults {
protected:
    void SetUp() override
    {
        writeHistory("root/a.jsonl");
        writeHistory("root/folder/b.jsonl");
        fs::permissions(at("root"), static_cast<fs::perms>(0755));
        fs::permissions(at("root/folder"), static_cast<fs::perms>(0755));
        fs::permissions(at("root/a.jsonl"), static_cast<fs::perms>(0644));
        fs::permissions(at("root/folder/b.jsonl"), static_cast<fs::perms>(0644));
        fs::permissions(root(), static_cast<fs::perms>(0755));
    }
    void TearDown() override
    {
        fs::permissions(at("root"), fs::perms::owner_all);
        fs::permissions(at("root/folder"), fs::perms::owner_all);
    }

    [[nodiscard]] std::optional<int> scanWithoutPrivileges() const
    {
        return statusWithoutPrivileges(root(), [] {
            const std::size_t descriptors = openDescriptors();
            const auto result = LocalUsageScanner::scanResult(Provider::claude, "root");
            if (openDescriptors() != descriptors)
                return 199;
            if (errorOf(result))
                return errorOf(result).value();
            const auto& read = std::get<LocalUsageScanResult>(result);
            return read.isPartial ? 198 : 100 + static_cast<int>(read.samples.size());
        });
    }

    void expectScan(int status) const
    {
        const auto seen = scanWithoutPrivileges();
        if (!seen)
            GTEST_SKIP() << "the tests run as root, and this system does not let root become another user";
        EXPECT_EQ(*seen, status);
    }
};

TEST_F(UnreadableHistory, everythingReadableIsRead)
{
    expectScan(102);
}

TEST_F(UnreadableHistory, unreadableFileFailsTheScan)
{
    fs::permissions(at("root/folder/b.jsonl"), fs::perms::none);
    expectScan(EACCES);
}

TEST_F(UnreadableHistory, unreadableRootHasNoHistory)
{
    for (const int mode : {0000, 0111, 0222, 0333}) {
        fs::permissions(at("root"), static_cast<fs::perms>(mode));
        expectScan(100);
    }
}

TEST_F(UnreadableHistory, folderThatCannotBeListedIsSkipped)
{
    fs::permissions(at("root/folder"), static_cast<fs::perms>(0111));
    expectScan(101);
}

TEST_F(UnreadableHistory, folderThatCanBeListedButNotEnteredIsSkipped)
{
    fs::permissions(at("root/folder"), static_cast<fs::perms>(0444));
    expectScan(101);
}

} // namespace
} // namespace tallyfox::test
