#include "Support/HistoryFolder.h"

#include <cerrno>
#include <fcntl.h>
#include <iterator>
#include <sys/stat.h>

namespace tallyfox::test {

namespace fs = std::filesystem;

void HistoryFolder::write(const fs::path& name, std::string_view content, std::int64_t age) const
{
    writeFile(at(name), content);
    setAge(name, age);
}

void HistoryFolder::setAge(const fs::path& name, std::int64_t age, std::int64_t nanoseconds) const
{
    constexpr std::int64_t fixedMoment = 1'795'254'067;
    const timespec time{fixedMoment - age, nanoseconds};
    const timespec times[2] = {time, time};
    if (::utimensat(AT_FDCWD, at(name).c_str(), times, AT_SYMLINK_NOFOLLOW) != 0)
        throw std::system_error{errno, std::system_category(), name};
}

void HistoryFolder::makeFolder(const fs::path& name) const
{
    fs::create_directories(at(name));
}

FileDescriptor HistoryFolder::openRoot() const
{
    FileDescriptor folder = FileDescriptor::openFolder(root().c_str());
    EXPECT_TRUE(folder.isOpen());
    return folder;
}

HistoryFiles HistoryFolder::files() const
{
    return LocalUsageScanner::jsonlFiles(openRoot());
}

std::size_t openDescriptors()
{
    const fs::directory_iterator descriptors("/proc/self/fd");
    return static_cast<std::size_t>(std::distance(begin(descriptors), end(descriptors)));
}

} // namespace tallyfox::test
