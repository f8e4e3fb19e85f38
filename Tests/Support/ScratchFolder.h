#pragma once

#include <cerrno>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>
#include <string_view>
#include <system_error>

namespace tallyfox::test {

/// A new, empty folder that is removed with the object.
class ScratchFolder {
public:
    ScratchFolder()
    {
        std::string name = (std::filesystem::temp_directory_path() / "tallyfox-test-XXXXXX").native();
        if (!mkdtemp(name.data()))
            throw std::system_error{errno, std::system_category(), name};
        m_path = std::filesystem::canonical(name);
    }
    ScratchFolder(const ScratchFolder&) = delete;
    ScratchFolder& operator=(const ScratchFolder&) = delete;
    ~ScratchFolder()
    {
        std::error_code ignored;
        std::filesystem::remove_all(m_path, ignored);
    }

    [[nodiscard]] const std::filesystem::path& path() const
    {
        return m_path;
    }

private:
    std::filesystem::path m_path;
};

inline void writeFile(const std::filesystem::path& file, std::string_view content)
{
    std::filesystem::create_directories(file.parent_path());
    std::ofstream{file, std::ios::binary} << content;
}

inline std::string readFile(const std::filesystem::path& file)
{
    std::ostringstream content;
    content << std::ifstream{file, std::ios::binary}.rdbuf();
    return content.str();
}

} // namespace tallyfox::test
