#pragma once

#include "TallyfoxCore/Json/JsonToken.h"

#include <bitset>
#include <cstddef>
#include <string_view>

namespace tallyfox {

/// A pull reader for one JSON text (RFC 8259) that checks the grammar of everything, also of what is skipped. It
/// neither allocates nor recurses; `maximumDepth` bounds the nesting.
///
/// Bytes above 0x7F are accepted inside strings, valid UTF-8 or not, and nowhere else: `JsonString::decoded` replaces
/// ill-formed sequences, so that a bad byte does not cost the line.
///
/// After the first error every operation fails, and `finish` returns false.
class JsonReader {
public:
    enum class Type { null, boolean, number, string, object, array, none };

    static constexpr std::size_t maximumDepth = 1024; ///< of nested objects and arrays

    /// A view: the text must outlive the reader and its tokens.
    explicit JsonReader(std::string_view text)
        : m_next(text.data())
        , m_end(text.data() + text.size())
    { }

    /// The type of the next value, judged by its first character; `none` where no value begins.
    [[nodiscard]] Type nextType();

    /// Enters the object that comes next.
    bool beginObject();
    /// Steps to the next member of the innermost object; its value must then be read or skipped. False after an error,
    /// and at the end of the object, which is then left.
    bool nextMember(JsonString& key);

    bool readString(JsonString& string);
    bool readNumber(JsonNumber& number);
    /// Skips any value, checking only its grammar.
    bool skipValue();

    /// Whether everything so far was grammatical and only white space is left.
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

    // Plain pointers: with checked positions in a view, a line takes 50 % longer.
    const char* m_next;
    const char* m_end;
    std::size_t m_depth = 0;
    std::bitset<maximumDepth> m_isObject; ///< for each open container, outermost first
    bool m_atFirstMember = false; ///< nothing has been read of the innermost container
    bool m_tookEscape = false; ///< the last string read has an escape
    bool m_hasFailed = false;
};

} // namespace tallyfox
