#include "ChildRun.h"

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

pid_t start(const std::vector<std::string>& command)
{
    std::vector<char*> arguments;
    for (const auto& argument : command)
        arguments.push_back(const_cast<char*>(argument.c_str()));
    arguments.push_back(nullptr);
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_addopen(&actions, STDOUT_FILENO, "/dev/null", O_WRONLY, 0);
    pid_t child = 0;
    const int error = posix_spawnp(&child, arguments[0], &actions, nullptr, arguments.data(), environ);
    posix_spawn_file_actions_destroy(&actions);
    if (error != 0)
        fail(command.front());
    return child;
}

double milliseconds(const timeval& time)
{
    return static_cast<double>(time.tv_sec) * 1e3 + static_cast<double>(time.tv_usec) / 1e3;
}

} // namespace

ChildRun runChild(const std::vector<std::string>& command)
{
    const auto begin = std::chrono::steady_clock::now();
    const auto child = start(command);
    int status = 0;
    rusage usage{};
    if (wait4(child, &status, 0, &usage) != child || !WIFEXITED(status) || WEXITSTATUS(status) != 0)
        fail(command.front());
    const std::chrono::duration<double, std::milli> wall = std::chrono::steady_clock::now() - begin;
    return {
        .wallMilliseconds = wall.count(),
        .cpuMilliseconds = milliseconds(usage.ru_utime) + milliseconds(usage.ru_stime),
        .peakMebibytes = static_cast<double>(usage.ru_maxrss) / 1024,
    };
}

} // namespace tallyfox::bench
