/// CPU time of scanning both histories of a home folder, beside two references measured in the same run: a plain read
/// of the same bytes, and a loop that makes a simdjson document of every line.

#include "Figures.h"
#include "HistoryTails.h"
#include "SimdjsonUsage.h"

#include <benchmark/benchmark.h>

#include <TallyfoxCore/Files/LocalUsageScanner.h>
#include <TallyfoxCore/Usage/TokenSum.h>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <map>
#include <string>
#include <variant>

namespace {

using namespace tallyfox;
using bench::HistoryTails;

constexpr int repetitions = 15;

struct History {
    Provider provider;
    std::filesystem::path root;
};

HistoryTails tailsOf(const History& history)
{
    return {history.root, LocalUsageScanner::tailSize, simdjson::SIMDJSON_PADDING};
}

void plainRead(benchmark::State& state, const History& history)
{
    auto tails = tailsOf(history);
    for ([[maybe_unused]] auto _ : state) {
        for (const auto& file : tails.files())
            benchmark::DoNotOptimize(tails.read(file).data());
    }
}

std::int64_t scannedTokens(const History& history)
{
    const auto result = LocalUsageScanner::scanResult(history.provider, history.root);
    std::int64_t tokens = 0;
    for (const auto& sample : std::get<LocalUsageScanResult>(result).samples)
        tokens = tokenSum(tokens, sample.totalTokens);
    return tokens;
}

void scan(benchmark::State& state, const History& history)
{
    for ([[maybe_unused]] auto _ : state)
        benchmark::DoNotOptimize(LocalUsageScanner::scanResult(history.provider, history.root));
}

std::int64_t simdjsonTokens(HistoryTails& tails, Provider provider)
{
    bench::SimdjsonUsage usage(provider);
    for (const auto& file : tails.files()) {
        const auto tail = tails.read(file);
        usage.add(tail, std::filesystem::file_size(file) > tail.size());
    }
    return usage.tokens();
}

void simdjsonLoop(benchmark::State& state, const History& history)
{
    auto tails = tailsOf(history);
    for ([[maybe_unused]] auto _ : state)
        benchmark::DoNotOptimize(simdjsonTokens(tails, history.provider));
}

/// Keeps the CPU time of every run, in milliseconds.
class CpuTimes : public benchmark::BenchmarkReporter {
public:
    bool ReportContext(const Context&) override
    {
        return true;
    }

    void ReportRuns(const std::vector<Run>& runs) override
    {
        for (const auto& run : runs) {
            if (run.run_type == Run::RT_Iteration)
                m_milliseconds[run.run_name.function_name].push_back(run.GetAdjustedCPUTime());
        }
    }

    [[nodiscard]] double medianOf(const std::string& name) const
    {
        return bench::median(m_milliseconds.at(name));
    }

private:
    std::map<std::string, std::vector<double>> m_milliseconds;
};

void registerAll(const History& history)
{
    const std::string name(rawValue(history.provider));
    const auto add = [&](const char* what, auto function) {
        benchmark::RegisterBenchmark((name + what).c_str(), function, history)
            ->Unit(benchmark::kMillisecond)
            ->MeasureProcessCPUTime()
            ->Iterations(1)
            ->Repetitions(repetitions);
    };
    add("/read", plainRead);
    add("/scan", scan);
    add("/simdjson", simdjsonLoop);
}

void printRatios(const History& history, const CpuTimes& times)
{
    const std::string name(rawValue(history.provider));
    const auto read = times.medianOf(name + "/read");
    const auto scanned = times.medianOf(name + "/scan");
    const auto simdjson = times.medianOf(name + "/simdjson");
    bench::printFigure(name + ": plain read", read, "ms", "");
    bench::printFigure(name + ": scan and parse", scanned, "ms", "");
    bench::printFigure(name + ": simdjson document of every line", simdjson, "ms", "");
    bench::printFigure(name + ": scan and parse / plain read", scanned / read, "x",
                       history.provider == Provider::codex ? "<= 1.30" : "<= 1.50");
    bench::printFigure(name + ": simdjson / scan and parse", simdjson / scanned, "x", ">= 2.00");
}

/// Whether both readers see the same records; otherwise the comparison is worthless. Only Codex records can be
/// compared: of a Claude message, which is spread over lines, the scanner counts one line and the loop counts all.
bool readersAgree(const History& codex)
{
    auto tails = tailsOf(codex);
    const auto expected = simdjsonTokens(tails, codex.provider);
    return expected > 0 && expected == scannedTokens(codex);
}

} // namespace

int main(int argc, char** argv)
{
    if (argc != 2 || !std::filesystem::is_directory(argv[1])) {
        std::fputs("usage: scanBenchmark HOME\n", stderr);
        return 2;
    }
    const std::filesystem::path home(argv[1]);
    const History claude{Provider::claude, home / ".claude/projects"};
    const History codex{Provider::codex, home / ".codex/sessions"};
    if (!readersAgree(codex)) {
        std::fputs("scanBenchmark: the scanner and simdjson do not count the same tokens\n", stderr);
        return EXIT_FAILURE;
    }
    registerAll(claude);
    registerAll(codex);

    // Interleaved, so that a slow moment of the machine affects all of them.
    std::string program = "scanBenchmark";
    std::string interleave = "--benchmark_enable_random_interleaving=true";
    char* arguments[] = {program.data(), interleave.data(), nullptr};
    int count = 2;
    benchmark::Initialize(&count, arguments);
    CpuTimes times;
    benchmark::RunSpecifiedBenchmarks(&times);
    printRatios(claude, times);
    printRatios(codex, times);
    return EXIT_SUCCESS;
}
