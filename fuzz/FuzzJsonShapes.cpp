/// Texts, one for each line: what has the shape of a text before must be grammatical itself, and have the values that
/// reading it gives.

#include "FuzzSupport.h"
#include "Support/NestedRecord.h"
#include "TallyfoxCore/Json/JsonRecordReader.h"

#include <memory>

using namespace tallyfox;
using tallyfox::test::Outer;

namespace {

bool isSame(const JsonString& one, const JsonString& other)
{
    return one.raw == other.raw && one.hasEscapes == other.hasEscapes;
}

template <typename Value> bool isSame(Value one, Value other)
{
    return one == other;
}

template <typename Field> void compare(const Field& fast, const Field& plain)
{
    require(fast.state == plain.state, "a field has the same state");
    require(!fast.isPresent() || isSame(fast.value, plain.value), "a field has the same value");
}

void compare(const Outer& fast, const Outer& plain)
{
    compare(fast.id, plain.id);
    compare(fast.share, plain.share);
    require(fast.inner.state == plain.inner.state, "an object has the same state");
    compare(fast.inner.record.count, plain.inner.record.count);
    compare(fast.inner.record.name, plain.inner.record.name);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    std::string_view rest = textOf(data, size);
    JsonRecordReader<Outer> reader;
    JsonRecordReader<Outer> plainReader;
    while (!rest.empty()) {
        const std::string_view line = rest.substr(0, rest.find('\n'));
        rest.remove_prefix(std::min(line.size() + 1, rest.size()));
        // A copy of exactly this size, so that the sanitizer sees a byte read beyond the end.
        const auto copy = std::make_unique<char[]>(line.size());
        std::ranges::copy(line, copy.get());
        const std::string_view text(copy.get(), line.size());
        const Outer* const fast = reader.read(text);
        const Outer* const plain = plainReader.readAlone(text);
        require((fast == nullptr) == (plain == nullptr), "the same texts are objects");
        if (fast != nullptr)
            compare(*fast, *plain);
    }
    return 0;
}
