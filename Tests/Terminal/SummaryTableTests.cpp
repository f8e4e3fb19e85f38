#include "Tallyfox/Terminal/SummaryTable.h"
#include "Terminal/SummaryFixture.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <sstream>
#include <utility>

namespace tallyfox::test {
namespace {

using testing::HasSubstr;
using testing::Not;

std::string table(const UsageSnapshot& figures, const TextStyle& style = {})
{
    return SummaryTable::text(figures, style);
}

std::size_t widestLine(const std::string& text)
{
    std::istringstream stream{text};
    std::size_t widest = 0;
    for (std::string line; std::getline(stream, line);)
        widest = std::max(widest, countColumns(line));
    return widest;
}

/// The row of a table's only quota window.
std::string quotaRow(double percent, std::optional<std::int64_t> minutes = {}, const TextStyle& style = {})
{
    UsageSnapshot figures = connectedFigures();
    figures.states.erase(figures.states.begin());
    QuotaSnapshot& quota = *figures.states[0].quota;
    quota.primary.usedPercent = percent;
    quota.primary.windowMinutes = minutes;
    quota.secondary.reset();
    const std::string text = table(figures, style);
    const std::size_t begin = text.find("\n  Quota") + 1;
    return text.substr(begin, text.find('\n', begin) - begin);
}

/// Its label and its figure.
std::pair<std::string, std::string> labelAndFigure(double percent, std::optional<std::int64_t> minutes = {})
{
    const std::string row = quotaRow(percent, minutes);
    const std::size_t labelEnd = row.find("  ", 2);
    const std::size_t figure = row.find_first_not_of(' ', labelEnd);
    return {row.substr(2, labelEnd - 2), row.substr(figure, row.find("  ", figure) - figure)};
}

TEST(SummaryTable, figuresAreLinedUpInColumns)
{
    EXPECT_EQ(table(connectedFigures()),
              "Tallyfox                                      21 Nov 2026, 10:41 · Europe/Berlin\n"
              "\n"
              "Claude        Local history · Observed from local history\n"
              "  Today         890         890 tokens\n"
              "  30 days      1.2M   1,234,567 tokens\n"
              "  Quota           —\n"
              "\n"
              "Codex         Connected · Official usage API\n"
              "  Today       12.3K      12,345 tokens\n"
              "  30 days     12.3K      12,345 tokens\n"
              "  Quota 5 h     43%   █████████░░░░░░░░░░░   resets in 2 h 18 min (13:00)\n"
              "  Quota 7 d     91%   ██████████████████░░   resets in 3 d 2 h (24 Nov, 13:00)\n"
              "\n"
              "In use          43%   of the quota that is used most\n");
}

TEST(SummaryTable, widthIsThatOfTheTerminalUpTo80Columns)
{
    EXPECT_LE(widestLine(table(connectedFigures())), 80U);
    EXPECT_EQ(table(connectedFigures(), {.columns = 200}), table(connectedFigures()));
    EXPECT_LE(widestLine(table(connectedFigures(), {.columns = 70})), 70U);
    const std::string narrow = table(connectedFigures(), {.columns = 40});
    EXPECT_THAT(narrow, Not(HasSubstr("█")));
    EXPECT_THAT(narrow, HasSubstr("resets in 2 h 18 min (13:00)"));
    EXPECT_THAT(table(connectedFigures(), {.columns = 0}), HasSubstr("Tallyfox   21 Nov 2026"));
}

TEST(SummaryTable, missingGrantShowsNoFigures)
{
    UsageSnapshot figures = connectedFigures();
    figures.states[0].health = SourceHealth::permissionRequired;
    figures.states[0].detail = "Home folder access required";
    const std::string text = table(figures);
    EXPECT_THAT(text,
                HasSubstr("Permission · Home folder access required\n"
                          "  Today           —\n"
                          "  30 days         —\n"));
    EXPECT_THAT(text, Not(HasSubstr("1,234,567")));
}

TEST(SummaryTable, partialHistoryIsSaid)
{
    UsageSnapshot figures = connectedFigures();
    figures.states[1].isPartialHistory = true;
    EXPECT_THAT(table(figures), HasSubstr("12,345 tokens at least, history read in part"));
    EXPECT_LE(widestLine(table(figures)), 80U);
}

TEST(SummaryTable, beforeAnyRefreshNothingIsInvented)
{
    UsageSnapshot figures;
    for (const Provider provider : allProviders)
        figures.states.push_back(initialState(provider, summaryNow, figures.calendar));
    const std::string text = table(figures);
    EXPECT_THAT(text, HasSubstr("not refreshed yet · UTC"));
    EXPECT_THAT(text, HasSubstr("Unavailable · Waiting for first refresh"));
    EXPECT_THAT(text, HasSubstr("no quota is known"));
}

TEST(SummaryTable, resetsThatAreUnknownOrPastAreSaid)
{
    UsageSnapshot figures = connectedFigures();
    figures.states[1].quota->primary.resetsAt = std::nullopt;
    figures.states[1].quota->secondary->resetsAt = summaryNow - std::chrono::minutes{5};
    EXPECT_THAT(table(figures), HasSubstr("reset not reported"));
    EXPECT_THAT(table(figures), HasSubstr("reset was due 5 min ago (10:36)"));
}

TEST(SummaryTable, windowsAreNamedByTheirLength)
{
    const auto label = [](std::optional<std::int64_t> minutes) { return labelAndFigure(1, minutes).first; };
    EXPECT_EQ(label(300), "Quota 5 h");
    EXPECT_EQ(label(90), "Quota 90 min");
    EXPECT_EQ(label(10'080), "Quota 7 d");
    EXPECT_EQ(label(std::nullopt), "Quota");
    for (const std::int64_t odd : {std::int64_t{0}, std::int64_t{-300}, std::numeric_limits<std::int64_t>::max()})
        EXPECT_EQ(label(odd), "Quota");
}

TEST(SummaryTable, percentagesAreRoundedButNotClamped)
{
    const auto figure = [](double percent) { return labelAndFigure(percent).second; };
    EXPECT_EQ(figure(42.4), "42%");
    EXPECT_EQ(figure(42.5), "43%");
    EXPECT_EQ(figure(104.6), "105%");
    EXPECT_EQ(figure(-0.5), "-1%");
    for (const double useless : {std::nan(""), HUGE_VAL, -HUGE_VAL, 1e300})
        EXPECT_EQ(figure(useless), "—");
    UsageSnapshot figures = connectedFigures();
    for (const double percent : {-5.0, 250.0, 1e300, std::nan("")}) {
        figures.states[1].quota->primary.usedPercent = percent;
        EXPECT_LE(widestLine(table(figures)), 80U) << percent;
    }
}

TEST(SummaryTable, colourFollowsHealthAndPressure)
{
    const std::string text = table(connectedFigures(), {.hasColour = true});
    EXPECT_THAT(text, HasSubstr("\x1b[32mConnected\x1b[0m"));
    EXPECT_THAT(text, HasSubstr("\x1b[32m  43%\x1b[0m"));
    EXPECT_THAT(text, HasSubstr("\x1b[31m  91%\x1b[0m"));
    EXPECT_THAT(quotaRow(69.9, {}, {.hasColour = true}), HasSubstr("\x1b[32m  70%\x1b[0m"));
    EXPECT_THAT(quotaRow(70, {}, {.hasColour = true}), HasSubstr("\x1b[33m  70%\x1b[0m"));
    EXPECT_THAT(quotaRow(90, {}, {.hasColour = true}), HasSubstr("\x1b[31m  90%\x1b[0m"));
    EXPECT_THAT(table(connectedFigures()), Not(HasSubstr("\x1b")));
}

TEST(SummaryTable, controlCharactersNeverReachTheTerminal)
{
    UsageSnapshot figures = connectedFigures();
    figures.states[0].detail = "evil\x1b[2J\ntext\xC2\x9B\xFF";
    figures.calendar = Calendar{"Zone\x1b]0;title\x07", [](auto) { return ZoneOffset::always({}); }};
    const std::string text = table(figures);
    for (const char character : text)
        EXPECT_TRUE(static_cast<unsigned char>(character) >= 0x20 || character == '\n');
    EXPECT_THAT(text, HasSubstr("evil\xEF\xBF\xBD[2J\xEF\xBF\xBDtext\xEF\xBF\xBD\xEF\xBF\xBD\n"));
}

TEST(SummaryTable, largestCountsKeepTheColumns)
{
    UsageSnapshot figures = connectedFigures();
    figures.states[0].summary.totalTokens = std::numeric_limits<std::int64_t>::max();
    EXPECT_THAT(table(figures), HasSubstr("9223372036854.8M   9,223,372,036,854,775,807 tokens"));
    EXPECT_LE(widestLine(table(figures)), 80U);
}

} // namespace
} // namespace tallyfox::test
