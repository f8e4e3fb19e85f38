#pragma once

#include "TallyfoxCore/Json/JsonToken.h"

#include <bitset>
#include <cstddef>
#include <string_view>

namespace tallyfox {

/// Pulls values out of one JSON text as RFC 8259 defines it, and checks the grammar of all of it, also of what is
/// skipped. It never allocates and never recurses; `maximumDepth` bounds the nesting.
///
/// Bytes above 0x7F are accepted inside strings, whether or not they are UTF-8, and nowhere else: `JsonString::decoded`
/// replaces what is ill-formed, so that such a byte never costs more than itself.
///
/// After the first error every operation fails, and `finish` says so.
class JsonReader {
public:
    enum class Type { null, boolean, number, string, object, array, none };

    static constexpr std::size_t maximumDepth = 1024; ///< open objects and arrays at one time

    /// A view: the text must outlive the reader and its tokens.
    explicit JsonReader(std::string_view text)
        : m_next(text.data())
        , m_end(text.data() + text.size())
    { }

    /// The type of the next value, told by its first character; `none` where no value begins.
    [[nodiscard]] Type nextType();

    /// Enters the object that comes next.
    bool beginObject();
    /// Steps to the next member of the object entered last, whose value must then be read or skipped. False at the end
    /// of the object, which is left by that, and after an error.
    bool nextMember(JsonString& key);

    bool readString(JsonString& string);
    bool readNumber(JsonNumber& number);
    /// Passes over any value without looking into it beyond its grammar.
    bool skipValue();

    /// Whether all was grammatical so far and nothing but white space is left.
    [[nodiscard]] bool finish();

private:
    [[nodiscard]] bool atEnd() const
    {
        return m_next == m_end;
    }
    [[nodiscard]] std::size_t left() const
    {
        return static_cast<std::size_t>(m_end - m_next);
    }
    [[nodiscard]] char peek() const
    {
        return atEnd() ? '\0' : *m_next;
    }
    bool fail();
    void skipWhiteSpace();
    bool take(char character);
    bool takeLiteral(std::string_view literal);
    bool goTo(const char* next);
    bool takeNumber();
    bool takeString();
    bool takeScalar(Type type);
    bool open(Type container);
    void close();
    bool stepToNextValue(std::size_t outerDepth);
    bool takeMemberKey();

    // Plain pointers: with checked positions into a view, a line takes half as long again.
    const char* m_next;
    const char* m_end;
    std::size_t m_depth = 0;
    std::bitset<maximumDepth> m_isObject; ///< for each open container, outermost first
    bool m_atFirstMember = false; ///< nothing was read yet of the container entered last
    bool m_tookEscape = false; ///< in the string read last
    bool m_hasFailed = false;
};

} // namespace tallyfox
