/// Runs one fuzz target over every file of a folder, for builds that have no fuzzer: replayCorpora TARGET FOLDER

#include "FuzzSupport.h"

#include <filesystem>
#include <fstream>
#include <iterator>
#include <string_view>
#include <vector>

// replayTargets.inc has a line TARGET(Fuzz…) for each target. Its function is named after it here.
#define TARGET(name) extern "C" int run##name(const std::uint8_t* data, std::size_t size);
#include "replayTargets.inc"
#undef TARGET

namespace {

struct Target {
    std::string_view name;
    int (*run)(const std::uint8_t* data, std::size_t size);
};

constexpr Target targets[]{
#define TARGET(name) {#name, run##name},
#include "replayTargets.inc"
#undef TARGET
};

void replay(const Target& target, const std::filesystem::path& folder)
{
    int replayed = 0;
    for (const auto& entry : std::filesystem::directory_iterator{folder}) {
        std::ifstream stream{entry.path(), std::ios::binary};
        const std::vector<char> bytes{std::istreambuf_iterator<char>{stream}, {}};
        std::fprintf(stderr, "%s\n", entry.path().c_str());
        target.run(reinterpret_cast<const std::uint8_t*>(bytes.data()), bytes.size());
        ++replayed;
    }
    require(replayed > 0, "there is a corpus");
}

} // namespace

int main(int argumentCount, char** arguments)
{
    if (argumentCount == 3) {
        for (const Target& target : targets) {
            if (target.name == arguments[1]) {
                replay(target, arguments[2]);
                return 0;
            }
        }
    }
    std::fputs("usage: replayCorpora TARGET FOLDER\n", stderr);
    return 2;
}
