/// Memory, start-up and growth of `tallyfox --summary --no-quota`, measured from outside as a user meets them.

#include "ChildRun.h"
#include "Figures.h"
#include "ManyFiles.h"

#include <algorithm>
#include <cstdio>
#include <filesystem>
#include <iterator>
#include <regex>
#include <string>
#include <vector>

namespace {

using namespace tallyfox::bench;
namespace fs = std::filesystem;

constexpr int startRepetitions = 41;
constexpr int repetitions = 9;
constexpr std::size_t manyFiles = 100'000;

struct Subject {
    std::string program; ///< tallyfox
    std::string emptyProgram; ///< does nothing but start Qt Core
    fs::path bound; ///< home folder with as much history as one scan reads
    fs::path scratch; ///< folder for the home folders made here
};

using Command = std::vector<std::string>;

Command summaryOf(const Subject& subject, const fs::path& home)
{
    return {subject.program, "--summary", "--no-quota", "--home", home.string()};
}

/// Whether the program really counts both histories: one that does nothing would have splendid figures.
bool programWorks(const Subject& subject)
{
    auto command = summaryOf(subject, subject.bound);
    command.emplace_back("--json");
    const auto output = outputOf(command);
    const std::regex total(R"("totalTokens": ?[1-9])");
    return std::distance(std::sregex_iterator(output.begin(), output.end(), total), std::sregex_iterator()) == 2;
}

struct Medians {
    double first = 0;
    double second = 0;
};

/// Runs two commands in turn, so that a slow moment of the machine affects both.
Medians measureInTurn(int times, const Command& first, const Command& second, double ChildRun::*what)
{
    std::vector<double> firsts;
    std::vector<double> seconds;
    for (int run = 0; run < times; ++run) {
        firsts.push_back(runChild(first).*what);
        seconds.push_back(runChild(second).*what);
    }
    return {median(firsts), median(seconds)};
}

void measureMemory(const Subject& subject)
{
    double peak = 0;
    for (int run = 0; run < repetitions; ++run)
        peak = std::max(peak, runChild(summaryOf(subject, subject.bound)).peakMebibytes);
    printFigure("summary at the bound: peak memory (largest)", peak, "MiB", "<= 32.00");
}

void measureStart(const Subject& subject)
{
    const auto home = subject.scratch / "empty-home";
    fs::create_directories(home);
    const auto wall =
        measureInTurn(startRepetitions, summaryOf(subject, home), {subject.emptyProgram}, &ChildRun::wallMilliseconds);
    printFigure("empty Qt Core program: whole run", wall.second, "ms", "");
    printFigure("summary of an empty home, above that", wall.first - wall.second, "ms", "<= 40.00");
}

void measureSmallHomes(const Subject& subject)
{
    for (const std::size_t count : {0U, 1U, 2U, 4U}) {
        const auto home = subject.scratch / ("small-home-" + std::to_string(count));
        linkHistories(subject.bound, home, count);
        const auto cpu = measureInTurn(startRepetitions, summaryOf(subject, home), {subject.emptyProgram},
                                       &ChildRun::cpuMilliseconds);
        printFigure("summary of 2 x " + std::to_string(count) + " full files / empty Qt Core program: CPU",
                    cpu.first / cpu.second, "x", "<= 1.30");
    }
}

void measureGrowth(const Subject& subject)
{
    for (const std::size_t count : {32U, 64U, 128U, 256U, 512U, 1024U, 4096U}) {
        const auto home = subject.scratch / "growing-home";
        linkHistories(subject.bound, home, count);
        std::vector<double> times;
        for (int run = 0; run < repetitions; ++run)
            times.push_back(runChild(summaryOf(subject, home)).cpuMilliseconds);
        printFigure("summary of 2 x " + std::to_string(count) + " full files: CPU", median(times), "ms",
                    count <= 256 ? "grows with the files" : "flat");
    }
}

void measureManyFiles(const Subject& subject)
{
    const auto home = subject.scratch / "crowded-home";
    writeSmallSessions(home, manyFiles);
    const Command find{"find", (home / ".codex/sessions").string(), "-printf", "%T@\\n"};
    const auto cpu = measureInTurn(repetitions, summaryOf(subject, home), find, &ChildRun::cpuMilliseconds);
    printFigure("find -printf over 100,000 files: CPU", cpu.second, "ms", "");
    printFigure("summary of 100,000 files: CPU", cpu.first, "ms", "");
    printFigure("summary of 100,000 files / find", cpu.first / cpu.second, "x", "<= 2.00");
}

} // namespace

int main(int argc, char** argv)
{
    if (argc != 5) {
        std::fputs("usage: summaryBenchmark TALLYFOX EMPTY_PROGRAM BOUND_HOME SCRATCH_FOLDER\n", stderr);
        return 2;
    }
    const Subject subject{argv[1], argv[2], argv[3], argv[4]};
    if (!programWorks(subject)) {
        std::fputs("summaryBenchmark: the summary of the bound has no totals\n", stderr);
        return 1;
    }
    measureMemory(subject);
    measureStart(subject);
    measureSmallHomes(subject);
    measureGrowth(subject);
    measureManyFiles(subject);
    return 0;
}
