/// Any text: the reader must accept what simdjson accepts, and refuse what it refuses but for the known differences.

#include "FuzzSupport.h"
#include "TallyfoxCore/JsonReader.h"
#include "TallyfoxCore/Utf8.h"

#include <simdjson.h>

using namespace tallyfox;

namespace {

/// What simdjson 3.0 refuses although the grammar allows it: numbers and escapes it cannot represent, and depth.
bool isRefusedForItsValue(simdjson::error_code error)
{
    return error == simdjson::NUMBER_ERROR || error == simdjson::STRING_ERROR || error == simdjson::DEPTH_ERROR
        || error == simdjson::CAPACITY;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const std::string_view text = textOf(data, size);
    JsonReader reader(text);
    const bool isAccepted = reader.skipValue() && reader.finish();
    if (!isValidUtf8(text))
        return 0;
    static simdjson::dom::parser parser;
    const simdjson::error_code error = parser.parse(text.data(), text.size()).error();
    if (error == simdjson::SUCCESS)
        require(isAccepted, "what simdjson accepts is accepted");
    else if (!isRefusedForItsValue(error))
        require(!isAccepted, "what simdjson finds ungrammatical is refused");
    return 0;
}
