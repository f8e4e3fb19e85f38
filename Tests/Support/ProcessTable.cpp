#include "Support/ProcessTable.h"

#include <filesystem>
#include <fstream>
#include <functional>
#include <iterator>
#include <optional>
#include <sstream>
#include <thread>
#include <unistd.h>

namespace tallyfox::test {

namespace {

#ifdef TALLYFOX_SANITIZED
constexpr std::chrono::seconds endingTime{8};
#else
constexpr std::chrono::seconds endingTime{2};
#endif

struct Process {
    std::string line;
    char state = '?';
    pid_t parent = 0;
    pid_t group = 0;
    pid_t session = 0;
};

/// The name, in parentheses, may hold anything: the fields begin after the last one.
std::optional<Process> process(const std::filesystem::path& folder)
{
    Process found;
    if (!std::getline(std::ifstream{folder / "stat"}, found.line))
        return std::nullopt;
    std::istringstream fields{found.line.substr(found.line.rfind(')') + 1)};
    if (!(fields >> found.state >> found.parent >> found.group >> found.session))
        return std::nullopt;
    return found;
}

void forEachProcess(const std::function<void(const Process&)>& visit)
{
    for (const auto& entry : std::filesystem::directory_iterator{"/proc"}) {
        const std::string name = entry.path().filename();
        if (name.find_first_not_of("0123456789") != std::string::npos)
            continue;
        if (const auto found = process(entry.path()))
            visit(*found);
    }
}

bool isLeftBehind(const Process& process)
{
    return (process.state != 'Z' && process.state != 'X') || process.parent == getpid();
}

} // namespace

std::string remainsOf(pid_t group)
{
    std::string remains;
    forEachProcess([&](const Process& each) {
        if ((each.group == group || each.session == group) && isLeftBehind(each))
            remains += each.line + '\n';
    });
    return remains;
}

std::string remainsInTheEnd(pid_t group)
{
    const auto deadline = std::chrono::steady_clock::now() + endingTime;
    std::string remains = remainsOf(group);
    while (!remains.empty() && std::chrono::steady_clock::now() < deadline) {
        std::this_thread::sleep_for(std::chrono::milliseconds{10});
        remains = remainsOf(group);
    }
    return remains;
}

int childCount()
{
    int count = 0;
    forEachProcess([&](const Process& each) { count += each.parent == getpid() ? 1 : 0; });
    return count;
}

int openDescriptorCount()
{
    const std::filesystem::directory_iterator descriptors{"/proc/self/fd"};
    return static_cast<int>(std::distance(begin(descriptors), end(descriptors)));
}

} // namespace tallyfox::test
