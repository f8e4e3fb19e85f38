#pragma once

#include <cstddef>
#include <filesystem>
#include <string_view>
#include <vector>

namespace tallyfox::bench {

/// Reads the tails of history files with nothing but system calls, all into one buffer: the minimum for any reader of
/// these bytes.
class HistoryTails {
public:
    /// All history files below `root`. `padding` bytes stay readable after each tail.
    HistoryTails(const std::filesystem::path& root, std::size_t tailSize, std::size_t padding);

    [[nodiscard]] const std::vector<std::filesystem::path>& files() const
    {
        return m_files;
    }

    /// The last bytes of a file, valid until the next call. Ends the program if the file cannot be read.
    std::string_view read(const std::filesystem::path& file);

private:
    std::vector<std::filesystem::path> m_files;
    std::size_t m_tailSize;
    std::vector<char> m_buffer;
};

} // namespace tallyfox::bench
