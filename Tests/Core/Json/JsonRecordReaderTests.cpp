#include "Support/NestedRecord.h"
#include "TallyfoxCore/Json/JsonRecordReader.h"

#include <gtest/gtest.h>

#include <string>
#include <string_view>
#include <vector>

namespace tallyfox::test {
namespace {

/// All that a record tells about its text.
std::string told(const Outer* outer)
{
    if (outer == nullptr)
        return "nothing";
    std::string text = hasRightTypes(*outer) ? "right " : "wrong ";
    text += isComplete(*outer) ? "complete" : "incomplete";
    forEachScalar(*outer, [&text](const auto& field) {
        text += ' ' + std::to_string(static_cast<int>(field.state)) + ':';
        if constexpr (requires { field.value.raw; })
            text += field.isPresent() ? field.value.decoded() : "";
        else
            text += field.isPresent() ? std::to_string(field.value) : "";
    });
    return text + ' ' + std::to_string(static_cast<int>(outer->inner.state));
}

const std::vector<std::string_view> texts{
    R"({"id":"a","share":0.5,"inner":{"count":7,"name":"b"}})",
    R"({"id":"\u00e9","share":-2,"inner":{"count":8,"name":"c\n"}})",
    R"({"id":"","share":1e400,"inner":{"count":7.5,"name":""}})",
    R"({"id":"a","share":1e4,"inner":{"count":99999999999999999999,"name":"\ud800"}})",
    R"({"id":"a","share":0,"inner":{"count":5e0,"name":"b"}})",
    R"({"id":7,"share":"x","inner":"y"})",
    R"({"id":8,"share":"z","inner":""})",
    R"({"id":null,"share":true,"inner":null})",
    R"({"id":"a","id":"b"})",
    R"({"id":"c","id":"d"})",
    R"({"id":"a","id":5})",
    R"({"id":"a","id":null})",
    R"({"inner":{"name":"a","count":1},"inner":{"count":2}})",
    R"({"inner":{"name":"a","count":1},"inner":null})",
    R"({"x":["id",{"id":"no"}],"i\u0064":"yes"})",
    R"({"x":["",{"id":""}],"i\u0064":"\u0064"})",
    R"({"id":"a"}x)",
    R"({"id":"a)",
    R"(["id"])",
    "",
};

TEST(JsonRecordReader, whatWasReadBeforeNeverChangesARecord)
{
    JsonRecordReader<Outer> reader;
    for (const std::string_view first : texts) {
        reader.read(first);
        for (const std::string_view text : texts) {
            JsonRecordReader<Outer> other;
            ASSERT_EQ(told(reader.read(text)), told(other.readAlone(text))) << text << " behind " << first;
        }
    }
}

TEST(JsonRecordReader, fieldsAreReadAgainWithTheValuesOfTheirText)
{
    JsonRecordReader<Outer> reader;
    ASSERT_NE(reader.read(R"({"share":1.5,"id":"first","inner":{"name":"n","count":1}})"), nullptr);
    const Outer* const outer = reader.read(R"({"share":2.5,"id":"second","inner":{"name":"m","count":20}})");
    ASSERT_NE(outer, nullptr);
    EXPECT_EQ(outer->id.value.raw, "second");
    EXPECT_EQ(outer->share.valueOr(0), 2.5);
    EXPECT_EQ(outer->inner.record.name.value.raw, "m");
    EXPECT_EQ(outer->inner.record.count.valueOr(0), 20);
}

} // namespace
} // namespace tallyfox::test
