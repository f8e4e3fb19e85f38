#include "Tallyfox/Terminal/SummaryJson.h"

#include "Tallyfox/Terminal/DateText.h"
#include "Tallyfox/Terminal/JsonWriter.h"

namespace tallyfox::SummaryJson {

namespace {

void writeInstant(JsonWriter& json, std::string_view name, std::optional<Instant> instant)
{
    json.name(name);
    if (instant)
        json.string(DateText::isoInstant(*instant));
    else
        json.null();
}

void writeInteger(JsonWriter& json, std::string_view name, std::optional<std::int64_t> value)
{
    json.name(name);
    if (value)
        json.integer(*value);
    else
        json.null();
}

void writeText(JsonWriter& json, std::string_view name, std::string_view text)
{
    json.name(name);
    json.string(text);
}

void writeFlag(JsonWriter& json, std::string_view name, bool value)
{
    json.name(name);
    json.boolean(value);
}

void writeWindow(JsonWriter& json, std::string_view name, const QuotaWindow* window)
{
    json.name(name);
    if (!window) {
        json.null();
        return;
    }
    json.beginObject();
    json.name("usedPercent");
    json.number(window->usedPercent);
    writeInstant(json, "resetsAt", window->resetsAt);
    writeInteger(json, "windowMinutes", window->windowMinutes);
    json.endObject();
}

void writeQuota(JsonWriter& json, const std::optional<QuotaSnapshot>& quota)
{
    json.name("quota");
    if (!quota) {
        json.null();
        return;
    }
    json.beginObject();
    writeText(json, "provider", rawValue(quota->provider));
    writeWindow(json, "primary", &quota->primary);
    writeWindow(json, "secondary", quota->secondary ? &*quota->secondary : nullptr);
    writeText(json, "confidence", rawValue(quota->confidence));
    json.endObject();
}

void writeDays(JsonWriter& json, std::string_view name, const std::vector<DailyUsage>& days, const Calendar& calendar)
{
    json.name(name);
    json.beginArray();
    for (const DailyUsage& day : days) {
        json.beginObject();
        writeText(json, "date", DateText::isoDay(calendar.dayOf(day.date)));
        writeInteger(json, "tokens", day.tokens);
        json.endObject();
    }
    json.endArray();
}

void writeSummary(JsonWriter& json, const UsageSummary& summary, const Calendar& calendar)
{
    json.name("summary");
    json.beginObject();
    writeInteger(json, "totalTokens", summary.totalTokens);
    writeInteger(json, "todayTokens", summary.todayTokens);
    writeDays(json, "last30Days", summary.last30Days, calendar);
    writeDays(json, "last365Days", summary.last365Days, calendar);
    json.endObject();
}

void writeState(JsonWriter& json, const ProviderState& state, const Calendar& calendar)
{
    json.beginObject();
    writeText(json, "provider", rawValue(state.provider));
    writeText(json, "health", rawValue(state.health));
    writeText(json, "detail", state.detail);
    writeInstant(json, "updatedAt", state.updatedAt == distantPast ? std::nullopt : std::optional{state.updatedAt});
    writeFlag(json, "isPartialHistory", state.isPartialHistory);
    writeFlag(json, "isQuotaStale", state.isQuotaStale);
    writeQuota(json, state.quota);
    writeSummary(json, state.summary, calendar);
    json.endObject();
}

} // namespace

std::string document(const UsageSnapshot& snapshot)
{
    JsonWriter json;
    json.beginObject();
    writeInteger(json, "schemaVersion", schemaVersion);
    writeText(json, "timeZone", snapshot.calendar.timeZoneName());
    writeFlag(json, "hasHomeAccess", snapshot.hasHomeAccess);
    writeInstant(json, "lastUpdated", snapshot.lastUpdated);
    writeInteger(json, "combinedPercent", snapshot.combinedPercent);
    json.name("states");
    json.beginArray();
    for (const ProviderState& state : snapshot.states)
        writeState(json, state, snapshot.calendar);
    json.endArray();
    json.endObject();
    return json.text() + '\n';
}

} // namespace tallyfox::SummaryJson
