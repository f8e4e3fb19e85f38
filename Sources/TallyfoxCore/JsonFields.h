#pragma once

#include "TallyfoxCore/JsonReader.h"

#include <cstdint>

namespace tallyfox {

/// What became of a member that a record wants. A member that stands twice counts as it stands the last time, so each
/// reading replaces the one before, errors included.
enum class FieldState { absent, present, wrongType };

/// A wanted string.
struct StringField {
    FieldState state = FieldState::absent;
    JsonString value;

    void read(JsonReader& reader)
    {
        const JsonReader::Type type = reader.nextType();
        if (type == JsonReader::Type::string) {
            state = FieldState::present;
            reader.readString(value);
        } else {
            state = type == JsonReader::Type::null ? FieldState::absent : FieldState::wrongType;
            reader.skipValue();
        }
    }
    [[nodiscard]] bool isDecodable() const
    {
        return state != FieldState::wrongType;
    }
};

/// A wanted number that `convert` turns into a value, or into nothing when its type cannot hold it.
template <typename Value, auto convert> struct NumberField {
    FieldState state = FieldState::absent;
    Value value = 0;

    void read(JsonReader& reader)
    {
        const JsonReader::Type type = reader.nextType();
        if (type == JsonReader::Type::number) {
            JsonNumber number;
            if (reader.readNumber(number))
                assign((number.*convert)());
        } else {
            state = type == JsonReader::Type::null ? FieldState::absent : FieldState::wrongType;
            reader.skipValue();
        }
    }
    [[nodiscard]] bool isDecodable() const
    {
        return state != FieldState::wrongType;
    }
    [[nodiscard]] Value valueOr(Value other) const
    {
        return state == FieldState::present ? value : other;
    }

private:
    void assign(std::optional<Value> converted)
    {
        state = converted ? FieldState::present : FieldState::wrongType;
        value = converted.value_or(0);
    }
};

using IntegerField = NumberField<std::int64_t, &JsonNumber::toInteger>;
using DoubleField = NumberField<double, &JsonNumber::toDouble>;

/// A wanted object. `Members` has `bool readMember(const JsonString& key, JsonReader& reader)`, which reads the value
/// of a member it wants and returns whether it wanted it, and `bool isDecodable() const`.
template <typename Members> struct ObjectField {
    FieldState state = FieldState::absent;
    Members members;

    void read(JsonReader& reader)
    {
        members = {};
        const JsonReader::Type type = reader.nextType();
        if (type == JsonReader::Type::object) {
            state = FieldState::present;
            readMembers(reader, members);
        } else {
            state = type == JsonReader::Type::null ? FieldState::absent : FieldState::wrongType;
            reader.skipValue();
        }
    }
    [[nodiscard]] bool isPresent() const
    {
        return state == FieldState::present;
    }
    [[nodiscard]] bool isDecodable() const
    {
        return state == FieldState::absent || (state == FieldState::present && members.isDecodable());
    }

    static void readMembers(JsonReader& reader, Members& members)
    {
        if (!reader.beginObject())
            return;
        JsonString key;
        while (reader.nextMember(key)) {
            if (!members.readMember(key, reader))
                reader.skipValue();
        }
    }
};

/// Reads `text`, one JSON object, into `members`. False when it is no grammatical JSON object.
template <typename Members> bool readJsonObject(std::string_view text, Members& members)
{
    JsonReader reader(text);
    ObjectField<Members>::readMembers(reader, members);
    return reader.finish();
}

} // namespace tallyfox
