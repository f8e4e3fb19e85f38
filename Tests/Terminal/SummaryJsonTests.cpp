#include "Tallyfox/Terminal/JsonWriter.h"
#include "Tallyfox/Terminal/SummaryJson.h"
#include "Terminal/SummaryFixture.h"

#include <QByteArray>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>
#include <limits>

namespace tallyfox::test {
namespace {

using testing::HasSubstr;
using testing::StartsWith;

template <typename Write> std::string written(Write write)
{
    JsonWriter json;
    write(json);
    return json.text();
}

TEST(JsonWriter, membersKeepTheirOrder)
{
    EXPECT_EQ(written([](JsonWriter& json) {
                  json.beginObject();
                  json.name("z");
                  json.beginArray();
                  json.integer(1);
                  json.beginObject();
                  json.endObject();
                  json.null();
                  json.endArray();
                  json.name("a");
                  json.boolean(true);
                  json.name("b");
                  json.boolean(false);
                  json.endObject();
              }),
              R"({"z":[1,{},null],"a":true,"b":false})");
}

TEST(JsonWriter, integersAreExact)
{
    for (const std::int64_t value :
         {std::int64_t{0}, (std::int64_t{1} << 53) + 1, std::numeric_limits<std::int64_t>::max(),
          std::numeric_limits<std::int64_t>::min()})
        EXPECT_EQ(written([&](JsonWriter& json) { json.integer(value); }), std::to_string(value));
}

TEST(JsonWriter, numbersAreTheShortestThatReadBack)
{
    const auto number = [](double value) { return written([&](JsonWriter& json) { json.number(value); }); };
    EXPECT_EQ(number(42.5), "42.5");
    EXPECT_EQ(number(100), "100");
    EXPECT_EQ(number(0.1), "0.1");
    EXPECT_EQ(number(1.0 / 3), "0.3333333333333333");
    EXPECT_EQ(number(1e300), "1e+300");
    EXPECT_EQ(number(std::nan("")), "null");
    EXPECT_EQ(number(HUGE_VAL), "null");
}

TEST(JsonWriter, textsAreEscapedAndValid)
{
    const auto text = [](std::string_view value) { return written([&](JsonWriter& json) { json.string(value); }); };
    EXPECT_EQ(text("a\"b\\c/ü"), R"("a\"b\\c/ü")");
    EXPECT_EQ(text(std::string_view{"\0\x1f\n", 3}), R"("\u0000\u001f\u000a")");
    EXPECT_EQ(text("\xFFx"), "\"\xEF\xBF\xBDx\"");
}

TEST(SummaryJson, documentBeginsAsDocumented)
{
    EXPECT_THAT(SummaryJson::document(connectedFigures()),
                StartsWith(R"({"schemaVersion":1,"timeZone":"Europe/Berlin","hasHomeAccess":true,)"
                           R"("lastUpdated":"2026-11-21T09:41:07.123Z","combinedPercent":43,"states":[)"
                           R"({"provider":"claude","health":"Local history","detail":"Observed from local history",)"
                           R"("updatedAt":"2026-11-21T09:41:07.123Z","isPartialHistory":false,"isQuotaStale":false,)"
                           R"("quota":null,"summary":{"totalTokens":1234567,"todayTokens":890,)"
                           R"("last30Days":[{"date":"2026-10-23","tokens":0},)"));
}

TEST(SummaryJson, quotaIsShownWithBothWindows)
{
    EXPECT_THAT(
        SummaryJson::document(connectedFigures()),
        HasSubstr(R"("quota":{"provider":"codex",)"
                  R"("primary":{"usedPercent":42.5,"resetsAt":"2026-11-21T12:00:00.000Z","windowMinutes":300},)"
                  R"("secondary":{"usedPercent":91,"resetsAt":"2026-11-24T12:00:00.000Z","windowMinutes":10080},)"
                  R"("confidence":"exact"},"summary":{)"));
}

TEST(SummaryJson, missingValuesAreNull)
{
    UsageSnapshot figures = connectedFigures();
    figures.lastUpdated = std::nullopt;
    figures.combinedPercent = std::nullopt;
    figures.states[0].updatedAt = distantPast;
    figures.states[1].quota->secondary = std::nullopt;
    figures.states[1].quota->primary.resetsAt = std::nullopt;
    figures.states[1].quota->primary.windowMinutes = std::nullopt;
    const std::string document = SummaryJson::document(figures);
    EXPECT_THAT(document, HasSubstr(R"("lastUpdated":null,"combinedPercent":null,)"));
    EXPECT_THAT(document, HasSubstr(R"("updatedAt":null,)"));
    EXPECT_THAT(document,
                HasSubstr(R"("primary":{"usedPercent":42.5,"resetsAt":null,"windowMinutes":null},"secondary":null,)"));
}

TEST(SummaryJson, anotherReaderUnderstandsTheWholeDocument)
{
    UsageSnapshot figures = connectedFigures();
    figures.states[0].detail = "\"quoted\" \\ \n \x01";
    const std::string document = SummaryJson::document(figures);
    EXPECT_EQ(document.find('\n'), document.size() - 1);
    const auto root = QJsonDocument::fromJson(QByteArray::fromStdString(document)).object();
    const auto states = root[QLatin1String("states")].toArray();
    ASSERT_EQ(states.size(), 2);
    EXPECT_EQ(states[0][QLatin1String("detail")].toString().toStdString(), figures.states[0].detail);
    const auto days = states[0][QLatin1String("summary")][QLatin1String("last365Days")].toArray();
    ASSERT_EQ(days.size(), 365);
    EXPECT_EQ(days.first()[QLatin1String("date")].toString().toStdString(), "2025-11-22");
    EXPECT_EQ(days.last()[QLatin1String("date")].toString().toStdString(), "2026-11-21");
    EXPECT_EQ(days.last()[QLatin1String("tokens")].toInteger(), 890);
    EXPECT_EQ(days.at(344)[QLatin1String("tokens")].toInteger(), 1'233'677);
}

TEST(SummaryJson, daysAreThoseOfTheCalendar)
{
    UsageSnapshot figures = connectedFigures();
    figures.calendar = zone("Pacific/Apia");
    figures.states = {initialState(Provider::claude, utcTime(2012, 1, 15), figures.calendar)};
    const std::string document = SummaryJson::document(figures);
    EXPECT_THAT(document, HasSubstr(R"({"date":"2011-12-29","tokens":0},{"date":"2011-12-31","tokens":0})"));
}

} // namespace
} // namespace tallyfox::test
