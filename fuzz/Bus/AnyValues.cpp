#include "Bus/AnyValues.h"

namespace tallyfox {

namespace {

constexpr int deepest = 24; ///< nesting of types and of variants: libraries refuse 32 and 64
constexpr std::size_t largest = 65'536; ///< rough size of a message: larger ones find nothing new
constexpr std::size_t longestType = 200; ///< 255 are allowed
constexpr std::string_view basicTypes = "sybnqiuxtdoghv"; ///< the variant last, because it holds other types

/// Words with a meaning to the program.
constexpr std::string_view words[] = {"show",
                                      "toggle",
                                      "settings",
                                      "toggle-popover",
                                      "shortcuts",
                                      "session_handle",
                                      "description",
                                      "platform-data",
                                      "org.kde.StatusNotifierItem",
                                      "Title",
                                      "org.tallyfox.tallyfox",
                                      "org.freedesktop.portal.Desktop"};

/// Characters of one to four bytes, with those at the limits of the encoding.
constexpr std::string_view characters[] = {"a",
                                           "%",
                                           "\xC2\x80",
                                           "\xD0\xB1",
                                           "\xE4\xB8\xAD",
                                           "\n",
                                           "\xEE\x80\x80",
                                           "\xEF\xBF\xBD",
                                           "\xF0\x9F\xA6\x8A",
                                           "\xF4\x8F\xBF\xBD"};

std::size_t alignmentOf(char type)
{
    switch (type) {
    case 'y':
    case 'g':
    case 'v':
        return 1;
    case 'n':
    case 'q':
        return 2;
    case 'x':
    case 't':
    case 'd':
    case '(':
    case '{':
        return 8;
    default:
        return 4;
    }
}

/// The complete type with which `types` begins.
std::string_view firstOf(std::string_view types)
{
    std::size_t length = 0;
    while (types[length] == 'a')
        ++length;
    int open = 0;
    do {
        const char one = types[length++];
        open += one == '(' || one == '{' ? 1 : 0;
        open -= one == ')' || one == '}' ? 1 : 0;
    } while (open > 0);
    return types.substr(0, length);
}

void writeVariant(FuzzInput& input, WireWriter& writer, int depth)
{
    std::string inner = AnyValues::type(input, depth + 1);
    if (inner.size() > longestType)
        inner = "y";
    writer.signature(inner);
    std::string_view rest = inner;
    AnyValues::write(input, writer, rest, depth + 1);
}

void writeArray(FuzzInput& input, WireWriter& writer, std::string_view element, int depth)
{
    std::size_t count = input.below(5);
    if (element == "y" && input.byte() == 255) // a long one, of elements that need no input
        count = 20'000;
    writer.array(alignmentOf(element.front()), [&] {
        for (std::size_t place = 0; place < count && writer.bytes().size() < largest; ++place) {
            std::string_view rest = element;
            AnyValues::write(input, writer, rest, depth + 1);
        }
    });
}

/// A structure, or an entry of a dictionary.
void writeStructure(FuzzInput& input, WireWriter& writer, std::string_view& types, int depth)
{
    writer.align(8);
    types.remove_prefix(1);
    while (types.front() != ')' && types.front() != '}')
        AnyValues::write(input, writer, types, depth + 1);
    types.remove_prefix(1);
}

void writeBasic(FuzzInput& input, WireWriter& writer, char type)
{
    switch (type) {
    case 'y':
        writer.integer(input.byte(), 1);
        break;
    case 'b':
        writer.integer(input.flip() ? 1 : 0);
        break;
    case 'n':
    case 'q':
        writer.integer(input.number(), 2);
        break;
    case 'x':
    case 't':
    case 'd':
        writer.integer(input.number(), 8);
        break;
    case 'o':
        writer.text(AnyValues::objectPath(input));
        break;
    case 's':
        writer.text(writer.bytes().size() < largest ? AnyValues::text(input) : std::string{});
        break;
    case 'g':
        writer.signature(AnyValues::type(input, deepest));
        break;
    default:
        writer.integer(input.number());
        break;
    }
}

} // namespace

std::string AnyValues::text(FuzzInput& input)
{
    const std::size_t length = input.byte();
    if (length >= 128)
        return std::string{words[length % std::size(words)]};
    std::string result;
    for (std::size_t place = 0; place < length % 16; ++place)
        result += input.oneOf(characters);
    for (std::size_t doublings = length / 16; doublings > 0; --doublings)
        result += result + result; // up to 150 KB of text
    return result;
}

std::string AnyValues::objectPath(FuzzInput& input)
{
    static constexpr std::string_view parts[] = {
        "/org",  "/tallyfox", "/StatusNotifierItem", "/freedesktop", "/portal", "/desktop", "/session", "/request",
        "/_1_7", "/x"};
    std::string result;
    for (std::size_t count = input.below(8); count > 0; --count)
        result += input.oneOf(parts);
    return result.empty() ? "/" : result;
}

std::string AnyValues::type(FuzzInput& input, int depth)
{
    const std::size_t kind = input.below(basicTypes.size() + 3);
    if (depth >= deepest)
        return std::string{basicTypes[kind % (basicTypes.size() - 1)]};
    if (kind < basicTypes.size())
        return std::string{basicTypes[kind]};
    if (kind == basicTypes.size())
        return "a" + type(input, depth + 1);
    if (kind == basicTypes.size() + 1) // the key is of a basic type
        return "a{" + std::string{basicTypes[input.below(basicTypes.size() - 1)]} + type(input, depth + 1) + "}";
    std::string result = "(";
    for (std::size_t count = input.below(3); count > 0 && result.size() < longestType; --count)
        result += type(input, depth + 1);
    return result + type(input, deepest) + ")";
}

void AnyValues::write(FuzzInput& input, WireWriter& writer, std::string_view& types, int depth)
{
    const std::string_view first = firstOf(types);
    switch (first.front()) {
    case 'v':
        writeVariant(input, writer, depth);
        break;
    case 'a':
        writeArray(input, writer, first.substr(1), depth);
        break;
    case '(':
    case '{':
        writeStructure(input, writer, types, depth);
        return;
    default:
        writeBasic(input, writer, first.front());
        break;
    }
    types.remove_prefix(first.size());
}

void AnyValues::fill(FuzzInput& input, WireMessage& message)
{
    std::string types;
    for (std::size_t count = input.below(5); count > 0; --count) {
        const std::string next = type(input);
        if (types.size() + next.size() <= longestType)
            types += next;
    }
    fill(input, message, types);
}

void AnyValues::fill(FuzzInput& input, WireMessage& message, std::string_view signature)
{
    WireWriter writer;
    message.signature = signature;
    while (!signature.empty())
        write(input, writer, signature);
    message.body = writer.bytes();
}

} // namespace tallyfox
