#pragma once

#include "TallyfoxCore/Json/JsonFields.h"
#include "TallyfoxCore/Json/JsonShapes.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <deque>
#include <optional>
#include <string_view>

namespace tallyfox {

/// Reads JSON objects into records of one kind as `readJsonObject` does, and faster those that are written like one
/// read before: their shape tells which values the record wants.
template <typename Record> class JsonRecordReader {
public:
    /// The record of `text`; null when that is not one grammatical JSON object. Valid until the next call, and as long
    /// as the text.
    const Record* read(std::string_view text)
    {
        const auto shape = m_shapes.match(text, m_values);
        if (shape)
            return filledIn(m_known[*shape]);
        const Record* const record = readAlone(text);
        if (record != nullptr && m_shapes.learn(text) == m_known.size())
            keepWhatWasRead(text);
        return record;
    }

    /// The same, without making use of what was read before.
    const Record* readAlone(std::string_view text)
    {
        m_record = {};
        return readJsonObject(text, m_record) ? &m_record : nullptr;
    }

private:
    static constexpr std::size_t scalarCount = [] {
        Record record;
        std::size_t count = 0;
        forEachScalar(record, [&count](const auto&) { ++count; });
        return count;
    }();

    /// In the place of a value: the field is the same in all texts of the shape.
    static constexpr std::uint8_t noValue = 0xFF;
    static_assert(JsonShapes::mostValues <= noValue);

    /// What the texts of a shape have in common.
    struct Known {
        Record record;
        std::array<std::uint8_t, scalarCount> values; ///< for each scalar field, which of the values it takes
    };

    static void assign(StringField& field, const JsonString& value)
    {
        field.assign(value);
    }
    template <typename Value, auto convert>
    static void assign(NumberField<Value, convert>& field, const JsonString& value)
    {
        field.assign({value.raw});
    }

    const Record* filledIn(Known& known)
    {
        const std::uint8_t* value = known.values.data();
        forEachScalar(known.record, [&](auto& field) {
            if (*value != noValue)
                assign(field, m_values[*value]);
            ++value;
        });
        return &known.record;
    }

    /// Keeps the record of a text whose shape was learned just now.
    void keepWhatWasRead(std::string_view text)
    {
        m_shapes.match(text, m_values);
        Known& known = m_known.emplace_back();
        known.record = m_record;
        std::uint8_t* value = known.values.data();
        forEachScalar(m_record, [&](const auto& field) { *value++ = valueAt(field.source); });
    }

    [[nodiscard]] std::uint8_t valueAt(const char* source) const
    {
        const auto begin = [](const JsonString& value) { return value.raw.data(); };
        const auto found = std::ranges::find(m_values, source, begin);
        return source == nullptr ? noValue : static_cast<std::uint8_t>(found - m_values.begin());
    }

    JsonShapes m_shapes;
    JsonShapes::Values m_values;
    std::deque<Known> m_known; ///< for each shape
    Record m_record;
};

} // namespace tallyfox
