#pragma once

#include "Support/ScratchFolder.h"
#include "TallyfoxCore/Files/FileDescriptor.h"
#include "TallyfoxCore/Files/HistoryFiles.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <filesystem>
#include <string>
#include <string_view>
#include <system_error>
#include <vector>

namespace tallyfox::test {

/// A scratch folder as a provider's history folder. It is removed with the object, however deep it is and whatever its
/// permissions.
class HistoryFolder : public testing::Test {
protected:
    /// Writes a file and the folders above it, last modified `age` seconds before a fixed moment.
    void write(const std::filesystem::path& name, std::string_view content = {}, std::int64_t age = 0) const;
    /// Sets when the file was last modified.
    void setAge(const std::filesystem::path& name, std::int64_t age, std::int64_t nanoseconds = 0) const;
    void makeFolder(const std::filesystem::path& name) const;

    [[nodiscard]] std::filesystem::path at(const std::filesystem::path& name) const
    {
        return m_scratch.path() / name;
    }
    [[nodiscard]] const std::filesystem::path& root() const
    {
        return m_scratch.path();
    }
    /// The root, opened as a scan does.
    [[nodiscard]] FileDescriptor openRoot() const;
    [[nodiscard]] HistoryFiles files() const;

private:
    ScratchFolder m_scratch;
};

/// The number of open descriptors of this process.
std::size_t openDescriptors();

/// The error of a scan or of a reading; none when it succeeded.
template <typename Result> std::error_code errorOf(const Result& result)
{
    const auto* const error = std::get_if<FileError>(&result);
    return error != nullptr ? error->code : std::error_code{};
}

} // namespace tallyfox::test
