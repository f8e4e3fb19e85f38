#include "ChildRun.h"

#include <array>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <fcntl.h>
#include <spawn.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

namespace tallyfox::bench {

namespace {

[[noreturn]] void fail(const std::string& program)
{
    std::fprintf(stderr, "summaryBenchmark: %s failed\n", program.c_str());
    std::exit(EXIT_FAILURE);
}

/// Starts a program whose standard output goes to `output`.
pid_t start(const std::vector<std::string>& command, int output)
{
    std::vector<char*> arguments;
    for (const auto& argument : command)
        arguments.push_back(const_cast<char*>(argument.c_str()));
    arguments.push_back(nullptr);
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_adddup2(&actions, output, STDOUT_FILENO);
    pid_t child = 0;
    const int error = posix_spawnp(&child, arguments[0], &actions, nullptr, arguments.data(), environ);
    posix_spawn_file_actions_destroy(&actions);
    if (error != 0)
        fail(command.front());
    return child;
}

rusage waitFor(pid_t child, const std::string& program)
{
    int status = 0;
    rusage usage{};
    if (wait4(child, &status, 0, &usage) != child || !WIFEXITED(status) || WEXITSTATUS(status) != 0)
        fail(program);
    return usage;
}

double milliseconds(const timeval& time)
{
    return static_cast<double>(time.tv_sec) * 1e3 + static_cast<double>(time.tv_usec) / 1e3;
}

} // namespace

ChildRun runChild(const std::vector<std::string>& command)
{
    const int nowhere = open("/dev/null", O_WRONLY | O_CLOEXEC);
    const auto begin = std::chrono::steady_clock::now();
    const auto usage = waitFor(start(command, nowhere), command.front());
    const std::chrono::duration<double, std::milli> wall = std::chrono::steady_clock::now() - begin;
    close(nowhere);
    return {
        .wallMilliseconds = wall.count(),
        .cpuMilliseconds = milliseconds(usage.ru_utime) + milliseconds(usage.ru_stime),
        .peakMebibytes = static_cast<double>(usage.ru_maxrss) / 1024,
    };
}

std::string outputOf(const std::vector<std::string>& command)
{
    std::array<int, 2> ends{};
    if (pipe2(ends.data(), O_CLOEXEC) != 0)
        fail(command.front());
    const auto child = start(command, ends[1]);
    close(ends[1]);
    std::string output;
    std::array<char, 4096> buffer{};
    for (ssize_t count = 0; (count = read(ends[0], buffer.data(), buffer.size())) > 0;)
        output.append(buffer.data(), static_cast<std::size_t>(count));
    close(ends[0]);
    waitFor(child, command.front());
    return output;
}

} // namespace tallyfox::bench
