#include "Support/JsonTexts.h"

namespace tallyfox::test {

using namespace std::string_view_literals;

namespace {

std::string repeated(std::string_view part, std::size_t count)
{
    std::string text;
    text.reserve(part.size() * count);
    for (std::size_t index = 0; index < count; ++index)
        text += part;
    return text;
}

} // namespace

const std::vector<std::string_view>& legalJsonTexts()
{
    static const std::vector<std::string_view> texts{
        // Literals and white space
        "null"sv, "true"sv, "false"sv, " null"sv, "null "sv, "\t\n\r true \r\n\t"sv, "\r\nfalse\r\n"sv,
        // Integers
        "0"sv, "-0"sv, "1"sv, "-1"sv, "9"sv, "10"sv, "1234567890"sv, "9223372036854775807"sv, "-9223372036854775808"sv,
        "9223372036854775808"sv, "18446744073709551616"sv,
        "123456789012345678901234567890123456789012345678901234567890"sv,
        // Fractions and exponents
        "0.0"sv, "0.5"sv, "-0.5"sv, "1.0"sv, "10.01"sv, "0.00000000000000000000000000000000000000000000000001"sv,
        "0e0"sv, "0E0"sv, "1e5"sv, "1E5"sv, "1e+5"sv, "1e-5"sv, "1E+05"sv, "1e00"sv, "-1.5e-00"sv, "1.25e+2"sv,
        "1e400"sv, "-1e400"sv, "1e-400"sv, "0e999999999999"sv, "1e99999999999999999999999999"sv,
        "4.9406564584124654e-324"sv,
        // Strings
        "\"\""sv, "\"a\""sv, "\" \""sv, "\"exactly sixteen.\""sv, "\"longer than the sixteen bytes of one look\""sv,
        R"("\"")"sv, R"("\\")"sv, R"("\/")"sv, R"("\b")"sv, R"("\f")"sv, R"("\n")"sv, R"("\r")"sv, R"("\t")"sv,
        R"("\\\\\\\"")"sv, R"("\\u")"sv, R"("\u0000")"sv, R"("\u0041")"sv, R"("\uabcd\uABCD\u09fF")"sv,
        R"("\uD83D\uDE00")"sv, R"("\ud800")"sv, R"("\uDC00")"sv, R"("\uDE00\uD83D")"sv, R"("\ud800A")"sv,
        R"("\ud800\u0041")"sv, R"("\ud800\ud800")"sv, R"("\uFFFF")"sv, R"("/")"sv, "\"'\""sv, "\"\x7F\""sv,
        "\"//no comment\""sv, "\"[{,:}]\""sv, "\"\xC3\xA9\""sv, "\"\xE2\x82\xAC\""sv, "\"\xF0\x9F\x98\x80\""sv,
        "\"\xEF\xBB\xBF\""sv, "\"\xEF\xBF\xBF\""sv, "\"\xE2\x80\xA8\xE2\x80\xA9\""sv,
        // The grammar allows any bytes above 0x7F in strings
        "\"\x80\""sv, "\"\xFF\""sv, "\"\xC3\""sv, "\"\xC0\xAF\""sv, "\"\xED\xA0\x80\""sv, "\"\xF4\x90\x80\x80\""sv,
        "\"\xE2\x82\\n\""sv,
        // Arrays
        "[]"sv, "[ ]"sv, "[\r\n]"sv, "[1]"sv, "[ 1 ]"sv, "[1,2]"sv, "[1 , 2]"sv, "[[]]"sv, "[[],[]]"sv, "[[[]],[]]"sv,
        "[null,true,false,0,\"\",[],{}]"sv, "[{}]"sv, "[{},{}]"sv, "[1e1,-0.0]"sv, "[\"]\"]"sv,
        // Objects
        "{}"sv, "{ }"sv, "{\n}"sv, R"({"":0})"sv, R"({"a":1})"sv, R"({ "a" : 1 })"sv, R"({"a":1,"b":2})"sv,
        R"({"a":1,"a":2})"sv, R"({"a":{},"b":[]})"sv, R"({"a":{"a":{"a":null}}})"sv, R"({"\u0061":1})"sv,
        R"({"\ud800":1})"sv, "{\"\xFF\":1}"sv, R"({"a":[{"b":[{}]}]})"sv, "\t{\r\n\"a\"\t:\n1\r,\n\"b\" :[ ]\n}\n"sv,
        R"({"}":"{"})"sv};
    return texts;
}

const std::vector<std::string_view>& refusedJsonTexts()
{
    static const std::vector<std::string_view> texts{
        // No value
        ""sv, " "sv, "\n"sv, ","sv, ":"sv, "]"sv, "}"sv, "*"sv, "'"sv, "\\"sv, "/"sv,
        // Bytes other than white space
        "\xEF\xBB\xBFnull"sv, "null\xEF\xBB\xBF"sv, "\0"sv, "null\0"sv, "\0null"sv, "1\0"sv, "[1,\0002]"sv, "\f1"sv,
        "\v1"sv, "1\f"sv, "1\v"sv, "\xC2\xA0"sv, "1\xC2\xA0"sv, "\xE2\x80\xA8"sv, "\x85"sv, "1\x1F"sv, "1 \x7F"sv,
        "[\b]"sv, "\xFF"sv, "[\x80]"sv, "[1\xE2\x82\xAC]"sv, "[\"a\"\x80]"sv, "{\x80\"a\":1}"sv,
        // Literals
        "nul"sv, "nulll"sv, "n"sv, "Null"sv, "NULL"sv, "nil"sv, "tru"sv, "True"sv, "truefalse"sv, "true false"sv,
        "fals"sv, "FALSE"sv, "f"sv, "falsee"sv, "undefined"sv, "NaN"sv, "nan"sv, "-NaN"sv, "Infinity"sv, "-Infinity"sv,
        "inf"sv, "null1"sv, "null,"sv, "nul\\u006c"sv, "[true1]"sv, "nu\0l"sv,
        // Numbers
        "-"sv, "--1"sv, "+"sv, "+1"sv, "00"sv, "01"sv, "-01"sv, "-00"sv, "000"sv, "01.5"sv, "1."sv, "-1."sv, "1.e1"sv,
        "."sv, ".5"sv, "-.5"sv, "0."sv, "0.e1"sv, "1e"sv, "1E"sv, "1e+"sv, "1e-"sv, "1e+-1"sv, "1e1.0"sv, "1e1e1"sv,
        "1..2"sv, "1.2.3"sv, "1-2"sv, "1+2"sv, "0x10"sv, "0b1"sv, "0o7"sv, "1_000"sv, "1,000.0."sv, "1f"sv, "1L"sv,
        "1n"sv, "1 2"sv, "- 1"sv, "1 .5"sv, "1. 5"sv, "1e 5"sv, "1\xC2\xB2"sv, "\xD9\xA1"sv, "1a"sv, "-a"sv,
        "1."
        "a"sv,
        "1ee1"sv, "e1"sv, "-e1"sv, "$1"sv, "0-"sv, "(1)"sv,
        // Strings
        "\""sv, "\"a"sv, "a\""sv, "a"sv, "'a'"sv, "`a`"sv, "\"\\\""sv, "\"a\\"sv, "\"\"\""sv, "\"a\"b"sv,
        "\"a\" \"b\""sv, R"("\a")"sv, R"("\v")"sv, R"("\0")"sv, R"("\x41")"sv, R"("\'")"sv, R"("\ ")"sv,
        R"("\U0041")"sv, R"("\N")"sv, R"("\1")"sv, "\"\\\n\""sv, "\"\\\0\""sv, "\"\\\xC3\xA9\""sv, R"("\u")"sv,
        R"("\u0")"sv, R"("\u00")"sv, R"("\u004")"sv, R"("\u004g")"sv, R"("\u00G1")"sv, R"("\ug041")"sv, R"("\u+041")"sv,
        R"("\u-041")"sv, R"("\u 041")"sv, R"("\u0x41")"sv, R"("\u{41}")"sv, R"("\u004\u0041")"sv, R"("\ud800\u")"sv,
        R"("\ud800\udc0")"sv, R"("\ud800\)"sv, "\"\n\""sv, "\"\r\""sv, "\"\t\""sv, "\"\0\""sv, "\"\b\""sv, "\"\x1F\""sv,
        "\"\x01\""sv, "\"a line\r\nand another\""sv, "\"sixteen bytes or more, then\ta tab\""sv, "\"a\0b\""sv,
        // Arrays
        "["sv, "[["sv, "[]]"sv, "[[]"sv, "[,]"sv, "[1,]"sv, "[,1]"sv, "[1,,2]"sv, "[1 2]"sv, "[1"sv, "[1,"sv, "[1}"sv,
        "[1)"sv, "(1]"sv, "[1;2]"sv, "[1:2]"sv, "[\"a\":1]"sv, "[\"a\" 1]"sv, "[]1"sv, "[]null"sv, "[][]"sv, "[],"sv,
        "[...]"sv, "[1,2,]"sv, "[{]"sv, "[{}"sv, "[}"sv, "[1]2"sv, "[\""sv, "[\"a"sv, "[nul]"sv, "[-]"sv, "[01]"sv,
        "[1e]"sv, "[\"\\x\"]"sv, "[\"\t\"]"sv,
        // Objects
        "{"sv, "{{"sv, "{}}"sv, "{{}}"sv, "{[]}"sv, "{1}"sv, "{\"a\"}"sv, "{\"a\":}"sv, "{\"a\":1"sv, "{\"a\":1,}"sv,
        "{,}"sv, "{,\"a\":1}"sv, "{\"a\":1,,\"b\":2}"sv, "{\"a\":1 \"b\":2}"sv, "{\"a\" 1}"sv, "{\"a\"::1}"sv,
        "{\"a\":1:2}"sv, "{:1}"sv, "{a:1}"sv, "{'a':1}"sv, "{1:1}"sv, "{null:1}"sv, "{true:1}"sv, "{[]:1}"sv,
        "{{}:1}"sv, "{\"a\",\"b\"}"sv, "{\"a\":1]"sv, "{]"sv, "{\"a\""sv, "{\"a\":"sv, "{\"a"sv, "{\"a\\\":1}"sv,
        "{\"\\x\":1}"sv, "{\"\t\":1}"sv, "{\"a\"=1}"sv, "{\"a\"=>1}"sv, "{\"a\":1;\"b\":2}"sv, "{}{}"sv, "{}[]"sv,
        "{} {}"sv, "{}\n{}"sv, "{},"sv, "{}1"sv, "{\"a\":1}}"sv, "{\"a\":1}]"sv, "{\"a\":{}"sv, "{\"a\":[}"sv,
        "{\"a\":[]"sv, "{\"a\":01}"sv, "{\"a\":nul}"sv, "{\"a\":1 1}"sv, "{\"a\" \"b\":1}"sv, "{...}"sv,
        // Comments and separators
        "1//"sv, "1 // one"sv, "1/**/"sv, "/**/1"sv, "# one\n1"sv, "[1/**/]"sv, "{/**/}"sv, "{\"a\"/**/:1}"sv,
        "\x1E{}"sv, "{};"sv, "<1>"sv, "1 ]"sv, "\"a\"]"sv, "null]"sv, "null}"sv, "null:"sv};
    return texts;
}

std::string_view richJsonText()
{
    return "\t{\r\n"
           R"("plain": "text \" \\ \/ \b \f \n \r \t \u00e9 \ud83d\ude00 \ud800", "empty":"", "n":null, "t":true ,)"
           "\n\"utf8\":\"\xC3\xA9 \xE2\x82\xAC \xF0\x9F\x98\x80\","
           R"("f":false,"numbers":[0,-0,12,-3.25,6.02e23,1E-7,1e400,123456789012345678901234567890],)"
           R"("nested":{"a":[[],[{}],{"b":{"c":[1,"two",null]}}],"a":{}}, "\u0065nd" : [ ] })"
           "\r\n"sv;
}

std::string nestedArrays(std::size_t depth)
{
    return repeated("[", depth) + "1" + repeated("]", depth);
}

std::string nestedObjects(std::size_t depth)
{
    return repeated(R"({"a":)", depth) + "1" + repeated("}", depth);
}

} // namespace tallyfox::test
