#pragma once

#include "Support/ScratchFolder.h"

#include <chrono>
#include <filesystem>
#include <string>
#include <sys/types.h>
#include <thread>

namespace tallyfox::test {

/// A folder with a fake `codex` in one of the modes of Support/FakeCodex.
class FakeCodexFolder {
public:
    /// `fake` is the built program. The folder has a symbolic link to it, as installers make them.
    FakeCodexFolder(const std::filesystem::path& fake, const std::string& mode)
    {
        std::filesystem::create_symlink(fake, executable());
        writeFile(m_folder.path() / "mode", mode);
    }

    [[nodiscard]] std::filesystem::path executable() const
    {
        return m_folder.path() / "codex";
    }

    /// Waits for a file that the fake writes, and returns its content.
    [[nodiscard]] std::string recorded(const std::string& name) const
    {
        const std::filesystem::path file = m_folder.path() / name;
        constexpr int hangGuard = 60'000;
        for (int tries = 0; tries < hangGuard && !std::filesystem::exists(file); ++tries)
            std::this_thread::sleep_for(std::chrono::milliseconds{1});
        return readFile(file);
    }

    /// Whether the fake has been started.
    [[nodiscard]] bool hasRun() const
    {
        return std::filesystem::exists(m_folder.path() / "descriptors");
    }

    /// Waits for the fake to start; returns its process id, which is also its group's.
    [[nodiscard]] pid_t processId() const
    {
        return std::stoi(recorded("pid"));
    }

private:
    ScratchFolder m_folder;
};

} // namespace tallyfox::test
