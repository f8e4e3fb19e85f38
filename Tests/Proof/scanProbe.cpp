/// Scans the histories below a home folder COUNT times, both assistants at the same time as a refresh does, then prints
/// "done" and waits for the end of its input, so that its memory can be searched.
///
///     scanProbe HOME COUNT

#include "TallyfoxCore/Files/LocalUsageScanner.h"

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <thread>
#include <unistd.h>

namespace {

using namespace tallyfox;

void scanOften(Provider provider, const std::filesystem::path& root, int count)
{
    for (int round = 0; round < count; ++round) {
        const auto result = LocalUsageScanner::scanResult(provider, root);
        if (std::holds_alternative<FileError>(result))
            std::fprintf(stderr, "scanProbe: %s\n", std::get<FileError>(result).code.message().c_str());
    }
}

} // namespace

int main(int argumentCount, char** arguments)
{
    if (argumentCount != 3)
        return 2;
    const std::filesystem::path home = arguments[1];
    const int count = std::atoi(arguments[2]);
    {
        std::thread other{[&] { scanOften(Provider::codex, home / ".codex/sessions", count); }};
        scanOften(Provider::claude, home / ".claude/projects", count);
        other.join();
    }
    std::puts("done");
    std::fflush(stdout);
    char byte = 0;
    while (read(STDIN_FILENO, &byte, 1) > 0) {
    }
    return 0;
}
