#include "RapidjsonGrammar.h"

#include <rapidjson/reader.h>

RapidjsonVerdict rapidjsonVerdict(std::string_view text)
{
    if (text.find('\0') != text.npos)
        return RapidjsonVerdict::undecided;
    rapidjson::MemoryStream stream(text.data(), text.size());
    rapidjson::BaseReaderHandler<> handler;
    rapidjson::Reader reader;
    constexpr unsigned flags = rapidjson::kParseIterativeFlag | rapidjson::kParseValidateEncodingFlag;
    switch (reader.Parse<flags>(stream, handler).Code()) {
    case rapidjson::kParseErrorNone:
        return RapidjsonVerdict::accepted;
    case rapidjson::kParseErrorNumberTooBig:
    case rapidjson::kParseErrorStringUnicodeSurrogateInvalid:
        return RapidjsonVerdict::undecided;
    default:
        return RapidjsonVerdict::refused;
    }
}
