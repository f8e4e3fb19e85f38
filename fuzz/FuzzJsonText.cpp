/// One JSON text: accepted or refused as by simdjson and RapidJSON, except for the differences listed here, and with
/// the content that simdjson finds.

#include "FuzzSupport.h"
#include "RapidjsonGrammar.h"
#include "TallyfoxCore/Json/JsonReader.h"
#include "TallyfoxCore/Json/Utf8.h"

#include <simdjson.h>

#include <algorithm>
#include <string>

using namespace tallyfox;

namespace {

using simdjson::dom::element_type;

simdjson::error_code parse(std::string_view text, simdjson::dom::element& root)
{
    static simdjson::dom::parser parser;
    return parser.parse(text.data(), text.size()).get(root);
}

/// What simdjson refuses although the grammar allows it: numbers and escapes it cannot represent, and depth. Versions
/// differ in the error of an integer of more than 64 bits.
bool isRefusedForItsValue(simdjson::error_code error)
{
    simdjson::dom::element root;
    static const simdjson::error_code largeInteger = parse("18446744073709551616", root);
    return error == simdjson::NUMBER_ERROR || error == largeInteger || error == simdjson::STRING_ERROR
        || error == simdjson::DEPTH_ERROR || error == simdjson::CAPACITY;
}

/// The deepest nesting, if the text is grammatical.
std::size_t depthOf(std::string_view text)
{
    std::size_t depth = 0;
    std::size_t deepest = 0;
    bool isInString = false;
    for (std::size_t index = 0; index < text.size(); ++index) {
        const char character = text[index];
        if (character == '"')
            isInString = !isInString;
        else if (isInString)
            index += character == '\\' ? 1 : 0;
        else if (character == '{' || character == '[')
            deepest = std::max(deepest, ++depth);
        else if ((character == '}' || character == ']') && depth > 0)
            --depth;
    }
    return deepest;
}

void compareWithRapidjson(std::string_view text, bool isAccepted)
{
    const RapidjsonVerdict verdict = rapidjsonVerdict(text);
    if (verdict == RapidjsonVerdict::accepted)
        require(isAccepted || depthOf(text) > JsonReader::maximumDepth, "what RapidJSON accepts is accepted");
    else if (verdict == RapidjsonVerdict::refused)
        require(!isAccepted, "what RapidJSON finds ungrammatical is refused");
}

void compareContent(JsonReader& reader, const simdjson::dom::element& element);

void compareMembers(JsonReader& reader, const simdjson::dom::object& object)
{
    JsonString key;
    require(reader.beginObject(), "an object is entered");
    for (const auto& [otherKey, value] : object) {
        require(reader.nextMember(key) && key.decoded() == otherKey, "members come with the keys they have");
        compareContent(reader, value);
    }
    require(!reader.nextMember(key), "an object ends where it ends");
}

void compareNumber(JsonReader& reader, const simdjson::dom::element& element)
{
    JsonNumber number;
    require(reader.readNumber(number), "a number is read");
    if (element.type() == element_type::INT64)
        require(number.toInteger() == element.get_int64().value_unsafe(), "integers have their value");
    else if (element.type() == element_type::UINT64)
        require(!number.toInteger(), "integers beyond 64 bits have none");
    require(number.toDouble() == element.get_double().value_unsafe(), "numbers have their nearest double");
}

void compareContent(JsonReader& reader, const simdjson::dom::element& element)
{
    JsonString string;
    switch (element.type()) {
    case element_type::OBJECT:
        return compareMembers(reader, element.get_object().value_unsafe());
    case element_type::STRING:
        return require(reader.readString(string) && string.decoded() == element.get_string().value_unsafe(),
                       "strings have their content");
    case element_type::INT64:
    case element_type::UINT64:
    case element_type::DOUBLE:
        return compareNumber(reader, element);
    case element_type::NULL_VALUE:
        return require(reader.nextType() == JsonReader::Type::null && reader.skipValue(), "null is read");
    default:
        require(reader.skipValue(), "any other value is skipped");
    }
}

void compareWithSimdjson(std::string_view text, bool isAccepted)
{
    if (text.starts_with("\xEF\xBB\xBF")) {
        require(!isAccepted, "a byte order mark, which some versions of simdjson skip, is refused");
        return;
    }
    simdjson::dom::element root;
    const simdjson::error_code error = parse(text, root);
    if (error == simdjson::SUCCESS) {
        require(isAccepted, "what simdjson accepts is accepted");
        JsonReader reader(text);
        compareContent(reader, root);
        require(reader.finish(), "nothing is left after the content");
    } else if (!isRefusedForItsValue(error)) {
        require(!isAccepted, "what simdjson finds ungrammatical is refused");
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const std::string_view text = textOf(data, size);
    JsonReader reader(text);
    const bool isAccepted = reader.skipValue() && reader.finish();
    if (!isValidUtf8(text))
        return 0;
    compareWithSimdjson(text, isAccepted);
    compareWithRapidjson(text, isAccepted);
    return 0;
}
