/// Hands every file of the folders named by the arguments to a fuzz target, for builds that have no fuzzer.

#include "FuzzSupport.h"

#include <filesystem>
#include <fstream>
#include <iterator>
#include <vector>

int main(int argumentCount, char** arguments)
{
    int replayed = 0;
    for (int place = 1; place < argumentCount; ++place) {
        for (const auto& entry : std::filesystem::directory_iterator{arguments[place]}) {
            std::ifstream stream{entry.path(), std::ios::binary};
            const std::vector<char> bytes{std::istreambuf_iterator<char>{stream}, {}};
            std::fprintf(stderr, "%s\n", entry.path().c_str());
            LLVMFuzzerTestOneInput(reinterpret_cast<const std::uint8_t*>(bytes.data()), bytes.size());
            ++replayed;
        }
    }
    require(replayed > 0, "there is a corpus");
    return 0;
}
