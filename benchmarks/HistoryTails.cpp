#include "HistoryTails.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace tallyfox::bench {

namespace {

std::vector<std::filesystem::path> historyFiles(const std::filesystem::path& root)
{
    std::vector<std::filesystem::path> files;
    for (const auto& entry : std::filesystem::recursive_directory_iterator(root)) {
        if (entry.is_regular_file() && entry.path().extension() == ".jsonl")
            files.push_back(entry.path());
    }
    return files;
}

void require(bool condition, const std::filesystem::path& file)
{
    if (condition)
        return;
    std::perror(file.c_str());
    std::exit(EXIT_FAILURE);
}

} // namespace

HistoryTails::HistoryTails(const std::filesystem::path& root, std::size_t tailSize, std::size_t padding)
    : m_files(historyFiles(root))
    , m_tailSize(tailSize)
    , m_buffer(tailSize + padding)
{ }

std::string_view HistoryTails::read(const std::filesystem::path& file)
{
    const int descriptor = open(file.c_str(), O_RDONLY | O_CLOEXEC);
    require(descriptor >= 0, file);
    struct stat status { };
    require(fstat(descriptor, &status) == 0, file);
    const auto wanted = std::min(m_tailSize, static_cast<std::size_t>(status.st_size));
    std::size_t done = 0;
    while (done < wanted) {
        const auto count = pread(descriptor, m_buffer.data() + done, wanted - done,
                                 status.st_size - static_cast<off_t>(wanted - done));
        require(count > 0, file);
        done += static_cast<std::size_t>(count);
    }
    close(descriptor);
    return {m_buffer.data(), wanted};
}

} // namespace tallyfox::bench
