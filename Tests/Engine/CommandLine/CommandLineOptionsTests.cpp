#include "Tallyfox/Engine/CommandLine/CommandLineOptions.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace tallyfox::test {
namespace {

CommandLineRequest parse(const std::vector<std::string_view>& arguments)
{
    return parseCommandLine(arguments);
}

TEST(CommandLine, summaryIsRecognisedWithItsOptionsInAnyOrder)
{
    EXPECT_EQ(std::get<SummaryRequest>(parse({"--summary"})), SummaryRequest{});
    const SummaryRequest everything{.home = "/h", .fetchesQuota = false, .isJson = true};
    EXPECT_EQ(std::get<SummaryRequest>(parse({"--summary", "--json", "--home", "/h", "--no-quota"})), everything);
    EXPECT_EQ(std::get<SummaryRequest>(parse({"--no-quota", "--home=/h", "--json", "--summary"})), everything);
}

TEST(CommandLine, valueOfAnOptionMayLookLikeAnOption)
{
    EXPECT_EQ(std::get<SummaryRequest>(parse({"--summary", "--home", "--json"})).home, "--json");
    EXPECT_EQ(std::get<SummaryRequest>(parse({"--summary", "--home=a=b"})).home, "a=b");
    EXPECT_EQ(std::get<SummaryRequest>(parse({"--summary", "--home="})).home, "");
}

TEST(CommandLine, homeMayBeAnyBytes)
{
    EXPECT_EQ(std::get<SummaryRequest>(parse({"--summary", "--home", "/\xff\n"})).home->native(), "/\xff\n");
}

TEST(CommandLine, lastOfSeveralHomesCounts)
{
    EXPECT_EQ(std::get<SummaryRequest>(parse({"--summary", "--home", "/a", "--home=/b", "--summary"})).home, "/b");
}

TEST(CommandLine, helpTakesPrecedenceOverVersionAndBothOverTheRest)
{
    EXPECT_TRUE(std::holds_alternative<HelpRequest>(parse({"--help"})));
    EXPECT_TRUE(std::holds_alternative<HelpRequest>(parse({"--summary", "--version", "--help"})));
    EXPECT_TRUE(std::holds_alternative<VersionRequest>(parse({"--version", "--summary"})));
}

TEST(CommandLine, nothingElseAsksForTheAgent)
{
    EXPECT_EQ(std::get<AgentRequest>(parse({})), AgentRequest{});
    EXPECT_EQ(std::get<AgentRequest>(parse({"--toggle"})), AgentRequest{.action = AgentAction::toggle});
    const AgentRequest everything{.home = "/h", .fetchesQuota = false, .action = AgentAction::settings};
    EXPECT_EQ(std::get<AgentRequest>(parse({"--no-quota", "--settings", "--home", "/h"})), everything);
}

struct WrongUsage {
    std::vector<std::string_view> arguments;
    const char* message;
};

void PrintTo(const WrongUsage& usage, std::ostream* out)
{
    *out << usage.message;
}

class CommandLineRefusal : public testing::TestWithParam<WrongUsage> { };

TEST_P(CommandLineRefusal, messageNamesTheProblem)
{
    const auto request = parse(GetParam().arguments);
    const auto* error = std::get_if<UsageError>(&request);
    ASSERT_TRUE(error);
    EXPECT_THAT(error->message, testing::StartsWith(GetParam().message));
    EXPECT_THAT(error->message, testing::EndsWith("; see tallyfox --help"));
    EXPECT_EQ(error->message.find('\n'), std::string::npos);
}

INSTANTIATE_TEST_SUITE_P(
    Table, CommandLineRefusal,
    testing::Values(WrongUsage{{"--bogus"}, "unknown option '--bogus'"},
                    WrongUsage{{"--help", "-x"}, "unknown option '-x'"},
                    WrongUsage{{"--summary", "extra"}, "unexpected argument 'extra'"},
                    WrongUsage{{""}, "unexpected argument ''"}, WrongUsage{{"--sum"}, "unknown option '--sum'"},
                    WrongUsage{{"--Summary"}, "unknown option '--Summary'"},
                    WrongUsage{{"--home"}, "--home needs an argument"},
                    WrongUsage{{"--summary", "--toggle"}, "--toggle and --summary exclude each other"},
                    WrongUsage{{"--settings", "--toggle"}, "--toggle and --settings exclude each other"},
                    WrongUsage{{"--summary", "--settings"}, "--settings and --summary exclude each other"},
                    WrongUsage{{"--toggle", "--home", "/"}, "--home means nothing with --toggle"},
                    WrongUsage{{"--no-quota", "--toggle"}, "--no-quota means nothing with --toggle"},
                    WrongUsage{{"--summary", "--json=yes"}, "--json takes no argument"},
                    WrongUsage{{"--json"}, "--json is an option of --summary"},
                    WrongUsage{{"--\x1b[2J\n"}, "unknown option '--\xEF\xBF\xBD[2J\xEF\xBF\xBD'"}));

TEST(CommandLine, longArgumentsAreTruncatedInMessages)
{
    const std::string endless(100'000, 'x');
    const auto request = parse({endless});
    EXPECT_LT(std::get<UsageError>(request).message.size(), 200U);
}

TEST(CommandLine, helpAndParserShareOneTable)
{
    const std::string help = helpText();
    for (const CommandLineOption& option : commandLineOptions()) {
        EXPECT_THAT(help, testing::HasSubstr("\n  " + std::string{option.name}));
        EXPECT_THAT(help, testing::HasSubstr(std::string{option.description} + '\n'));
        std::vector<std::string_view> arguments{option.name};
        if (!option.argument.empty())
            arguments.emplace_back("x");
        if (option.name == "--json")
            arguments.emplace_back("--summary");
        EXPECT_FALSE(std::holds_alternative<UsageError>(parse(arguments))) << option.name;
    }
}

} // namespace
} // namespace tallyfox::test
