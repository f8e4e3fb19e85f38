#pragma once

#include "TallyfoxCore/Json/JsonReader.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string_view>
#include <tuple>
#include <type_traits>

/// Records of JSON objects: a struct of fields, with a static function `members` that lists them as a
/// `std::tuple{requiredMember("timestamp", &Record::timestamp), optionalMember("message", &Record::message)}`.
namespace tallyfox {

/// The outcome of reading a wanted member. Of duplicates the last one counts: each reading replaces the one before,
/// errors included. Null counts as absent.
enum class FieldState { absent, present, wrongType };

/// A member that a record wants: its key, the field that takes it, and whether the record is useless without it.
template <typename Record, typename Field, std::size_t keySize> struct WantedMember {
    const char (&key)[keySize];
    Field Record::*field;
    bool isRequired;
};

template <typename Record, typename Field, std::size_t keySize>
constexpr auto requiredMember(const char (&key)[keySize], Field Record::*field)
{
    return WantedMember<Record, Field, keySize>{key, field, true};
}

template <typename Record, typename Field, std::size_t keySize>
constexpr auto optionalMember(const char (&key)[keySize], Field Record::*field)
{
    return WantedMember<Record, Field, keySize>{key, field, false};
}

/// Whether no member of the record, on any level, has a value of the wrong type.
template <typename Record> bool hasRightTypes(const Record& record)
{
    return std::apply([&](const auto&... member) { return ((record.*member.field).hasRightTypes() && ...); },
                      Record::members());
}

/// Whether no required member of the record, nor of a record in it, is absent.
template <typename Record> bool isComplete(const Record& record)
{
    const auto isMet = [&](const auto& member) {
        const auto& field = record.*member.field;
        return (!member.isRequired || field.isPresent()) && field.isComplete();
    };
    return std::apply([&](const auto&... member) { return (isMet(member) && ...); }, Record::members());
}

/// Reads the object that comes next; members that the record does not want are skipped.
template <typename Record> void readMembers(JsonReader& reader, Record& record)
{
    if (!reader.beginObject())
        return;
    JsonString key;
    const auto readIfMeant = [&](const auto& member) {
        const bool isMeant = key.equals(member.key);
        if (isMeant)
            (record.*member.field).read(reader);
        return isMeant;
    };
    while (reader.nextMember(key)) {
        const bool isWanted =
            std::apply([&](const auto&... member) { return (readIfMeant(member) || ...); }, Record::members());
        if (!isWanted)
            reader.skipValue();
    }
}

/// Reads `text` into `record`. False unless it is exactly one valid JSON object.
template <typename Record> bool readJsonObject(std::string_view text, Record& record)
{
    JsonReader reader(text);
    readMembers(reader, record);
    return reader.finish();
}

/// The base of all fields.
struct JsonField {
    FieldState state = FieldState::absent;

    [[nodiscard]] bool isPresent() const
    {
        return state == FieldState::present;
    }

protected:
    /// Skips a value that is not of the field's type.
    void refuse(JsonReader& reader, JsonReader::Type type)
    {
        state = type == JsonReader::Type::null ? FieldState::absent : FieldState::wrongType;
        reader.skipValue();
    }
};

/// A field that holds one value.
struct ScalarField : JsonField {
    [[nodiscard]] bool hasRightTypes() const
    {
        return state != FieldState::wrongType;
    }
    [[nodiscard]] static bool isComplete()
    {
        return true;
    }
};

/// A wanted string.
struct StringField : ScalarField {
    JsonString value;

    void read(JsonReader& reader)
    {
        const JsonReader::Type type = reader.nextType();
        if (type != JsonReader::Type::string)
            return refuse(reader, type);
        if (reader.readString(value))
            state = FieldState::present;
    }
};

/// A wanted number. `convert` turns it into a `Value`, or into nothing if that cannot hold it.
template <typename Value, auto convert> struct NumberField : ScalarField {
    Value value = 0;

    void read(JsonReader& reader)
    {
        const JsonReader::Type type = reader.nextType();
        if (type != JsonReader::Type::number)
            return refuse(reader, type);
        JsonNumber number;
        if (!reader.readNumber(number))
            return;
        const std::optional<Value> converted = (number.*convert)();
        state = converted ? FieldState::present : FieldState::wrongType;
        value = converted.value_or(0);
    }
    [[nodiscard]] Value valueOr(Value other) const
    {
        return isPresent() ? value : other;
    }
};

using IntegerField = NumberField<std::int64_t, &JsonNumber::toInteger>;
using DoubleField = NumberField<double, &JsonNumber::toDouble>;

/// A wanted object.
template <typename Record> struct ObjectField : JsonField {
    Record record;

    void read(JsonReader& reader)
    {
        record = {};
        const JsonReader::Type type = reader.nextType();
        if (type != JsonReader::Type::object)
            return refuse(reader, type);
        state = FieldState::present;
        readMembers(reader, record);
    }
    [[nodiscard]] bool hasRightTypes() const
    {
        return state == FieldState::absent || (isPresent() && tallyfox::hasRightTypes(record));
    }
    [[nodiscard]] bool isComplete() const
    {
        return !isPresent() || tallyfox::isComplete(record);
    }
};

} // namespace tallyfox
