/// Replaces the user's `codex` in tests. Started as FOLDER/codex, it behaves as the file FOLDER/mode says, and writes
/// what it observes to FOLDER: "pid", "arguments", "received", "working-folder", "environment", "signals",
/// "descriptors". Links nothing of the program.

#include <algorithm>
#include <array>
#include <chrono>
#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <functional>
#include <map>
#include <sstream>
#include <string>
#include <string_view>
#include <thread>
#include <unistd.h>

namespace {

using namespace std::chrono_literals;

constexpr std::string_view greeting = R"({"id":0,"result":{"userAgent":"fake"}})"
                                      "\n";
constexpr std::string_view reply =
    R"({"id":2,"result":{"rateLimits":{"primary":{"usedPercent":42.5,"windowDurationMins":300,"resetsAt":1700000000},"secondary":null}}})"
    "\n";

/// The folder of the path that this program was started as.
std::filesystem::path folder()
{
    std::string name;
    std::ifstream commandLine{"/proc/self/cmdline", std::ios::binary};
    std::getline(commandLine, name, '\0');
    return std::filesystem::path{name}.parent_path();
}

void record(const std::string& name, std::string_view content)
{
    const std::filesystem::path unfinished = folder() / (name + ".unfinished");
    std::ofstream{unfinished, std::ios::binary} << content;
    std::filesystem::rename(unfinished, folder() / name); // so that a reader never sees a partial file
}

std::string readContent(const std::filesystem::path& file)
{
    std::ostringstream content;
    content << std::ifstream{file, std::ios::binary}.rdbuf();
    return content.str();
}

void put(std::string_view text)
{
    while (!text.empty()) {
        const ssize_t count = write(STDOUT_FILENO, text.data(), text.size());
        if (count <= 0)
            std::_Exit(3);
        text.remove_prefix(static_cast<std::size_t>(count));
    }
}

void receiveRequests()
{
    std::string received;
    std::array<char, 4096> piece{};
    while (std::count(received.begin(), received.end(), '\n') < 3) {
        const ssize_t count = read(STDIN_FILENO, piece.data(), piece.size());
        if (count <= 0)
            break;
        received.append(piece.data(), static_cast<std::size_t>(count));
    }
    record("received", received);
}

/// Runs until its input ends, as a server does.
void serve()
{
    std::array<char, 4096> piece{};
    while (read(STDIN_FILENO, piece.data(), piece.size()) > 0) {
    }
}

[[noreturn]] void liveOn()
{
    for (;;)
        pause();
}

void answer()
{
    put(greeting);
    put(reply);
    serve();
}

void notifyFirst()
{
    put(greeting);
    put(R"({"method":"account/updated","params":{"id":2}})"
        "\n\n   \nstarting up...\n[2]\n2\n\"id\"\n{\"id\":1,\"result\":{}}\n{\"id\":null}\n{\"id\":2.5}\n");
    put(reply);
    put(R"({"id":2,"result":{"rateLimits":{"primary":{"usedPercent":99}}}})"
        "\n");
    serve();
}

void answerTextIdFirst()
{
    put(R"({"id":"2","result":{"rateLimits":{"primary":{"usedPercent":11}}}})"
        "\n");
    put(reply);
    serve();
}

void answerError()
{
    put(R"({"id":2,"error":{"code":-32600,"message":"not logged in"}})"
        "\n");
    put(reply);
    serve();
}

void flood()
{
    std::string lines;
    while (lines.size() < 60'000)
        lines += "{\"method\":\"progress\",\"params\":{\"text\":\"on and on\"}}\n";
    for (;;)
        put(lines);
}

void putEndlessLine()
{
    const std::string piece(60'000, 'x');
    for (;;)
        put(piece);
}

void answerAfterTooLongLine()
{
    put(std::string(3U << 20U, ' '));
    put(reply); // part of the overlong line
    put(R"({"id":2,"result":{"rateLimits":{"primary":{"usedPercent":7}}}})"
        "\n");
    serve();
}

std::string garbage()
{
    std::string bytes;
    unsigned state = 1;
    for (int count = 0; count < 300'000; ++count) {
        state = state * 1'664'525U + 1'013'904'223U;
        bytes += static_cast<char>(state >> 24U);
    }
    return bytes;
}

void answerAfterGarbage()
{
    put(garbage() + '\n');
    put("{\"note\":\"\xff\xc3\",\"id\":2,\"result\":{\"rateLimits\":{\"primary\":{\"usedPercent\":42.5}}}}\n");
    serve();
}

void closeOutput()
{
    close(STDOUT_FILENO);
    liveOn();
}

/// Ignores SIGTERM, as do the processes it starts.
void ignoreTermination()
{
    std::signal(SIGTERM, SIG_IGN);
    record("ready", "");
    liveOn();
}

/// As the usual launcher does, replies from a child process.
void leaveToGrandchild(const std::function<void()>& grandchild)
{
    if (fork() != 0)
        std::_Exit(0);
    record("grandchild", std::to_string(getpid()));
    grandchild();
    std::_Exit(0);
}

void answerLater(std::chrono::milliseconds delay)
{
    std::this_thread::sleep_for(delay);
    answer();
}

void answerInSingleBytes()
{
    for (const char byte : std::string{greeting} + std::string{reply}) {
        put({&byte, 1});
        std::this_thread::sleep_for(100us);
    }
    serve();
}

const std::map<std::string, std::function<void()>, std::less<>> modes{
    {"normal", answer},
    {"notificationsFirst", notifyFirst},
    {"textId", answerTextIdFirst},
    {"errorReply", answerError},
    {"endsAfterGreeting", [] { put(greeting); }},
    {"noFinalLineFeed", [] { put(reply.substr(0, reply.size() - 1)); }},
    {"emptyReply", [] { put("{\"id\":2}\n"); }},
    {"flood", flood},
    {"endlessLine", putEndlessLine},
    {"tooLongLine", answerAfterTooLongLine},
    {"garbageOnly", [] { put(garbage()); }},
    {"garbage", answerAfterGarbage},
    {"silent", liveOn},
    {"closesOutput", closeOutput},
    {"ignoresTermination", ignoreTermination},
    {"grandchildKeepsPipe", [] { leaveToGrandchild(ignoreTermination); }},
    {"grandchildAnswers", [] { leaveToGrandchild([] { answerLater(200ms); }); }},
    {"singleBytes", answerInSingleBytes},
    {"late", [] { answerLater(9500ms); }},
    {"soon", [] { answerLater(300ms); }},
};

std::string descriptors()
{
    std::string numbers;
    for (int number = 0; number < 256; ++number) {
        std::error_code error;
        if (std::filesystem::is_symlink("/proc/self/fd/" + std::to_string(number), error))
            numbers += std::to_string(number) + ' ';
    }
    return numbers;
}

void recordCircumstances(int argumentCount, char** arguments)
{
    record("descriptors", descriptors()); // first, before anything is opened
    std::string all;
    for (int place = 1; place < argumentCount; ++place)
        all += std::string{arguments[place]} + '\n';
    record("arguments", all);
    record("working-folder", std::filesystem::current_path().native());
    const char* const mark = std::getenv("TALLYFOX_TEST_MARK");
    record("environment", mark ? mark : "");
    record("signals", readContent("/proc/self/status"));
    record("pid", std::to_string(getpid()));
}

} // namespace

int main(int argumentCount, char** arguments)
{
    recordCircumstances(argumentCount, arguments);
    const std::string mode = readContent(folder() / "mode");
    if (mode == "exitsAtOnce")
        return 0;
    if (mode == "exits127")
        return 127;
    receiveRequests();
    const auto behaviour = modes.find(mode);
    if (behaviour == modes.end())
        return 4;
    behaviour->second();
    return 0;
}
