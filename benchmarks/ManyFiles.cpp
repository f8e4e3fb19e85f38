#include "ManyFiles.h"

#include <algorithm>
#include <fstream>
#include <string>
#include <vector>

namespace tallyfox::bench {

namespace fs = std::filesystem;

namespace {

constexpr std::size_t filesPerDay = 100;

void linkBelow(const fs::path& source, const fs::path& target, std::size_t count)
{
    std::vector<fs::path> files;
    for (const auto& entry : fs::recursive_directory_iterator(source)) {
        if (entry.path().extension() == ".jsonl")
            files.push_back(entry.path());
    }
    std::sort(files.begin(), files.end());
    fs::create_directories(target);
    for (std::size_t index = 0; index < count; ++index)
        fs::create_hard_link(files.at(index % files.size()), target / (std::to_string(index) + ".jsonl"));
}

} // namespace

void linkHistories(const fs::path& bound, const fs::path& home, std::size_t count)
{
    fs::remove_all(home);
    linkBelow(bound / ".claude/projects", home / ".claude/projects/-home-user-project", count);
    linkBelow(bound / ".codex/sessions", home / ".codex/sessions", count);
}

void writeSmallSessions(const fs::path& home, std::size_t count)
{
    const auto complete = home / "complete";
    if (fs::exists(complete))
        return;
    for (std::size_t index = 0; index < count; ++index) {
        const auto day = home / ".codex/sessions/2026" / std::to_string(index / filesPerDay);
        if (index % filesPerDay == 0)
            fs::create_directories(day);
        std::ofstream(day / ("rollout-" + std::to_string(index) + ".jsonl"))
            << R"({"timestamp":"2026-01-01T00:00:00.000Z","type":"session_meta","payload":{"type":"none"}})" << '\n';
    }
    std::ofstream{complete};
}

} // namespace tallyfox::bench
