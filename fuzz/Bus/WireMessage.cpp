#include "Bus/WireMessage.h"

#include "Bus/WireWriter.h"

namespace tallyfox {

namespace {

enum Field : std::uint8_t { path = 1, interface, member, error, answered, destination, sender, signature, descriptors };

constexpr std::size_t fixedHeader = 16; ///< up to the length of the fields

std::uint32_t numberIn(std::string_view bytes, std::size_t place)
{
    std::uint32_t value = 0;
    for (std::size_t index = 4; index > 0; --index)
        value = value << 8U | static_cast<std::uint8_t>(bytes[place + index - 1]);
    return value;
}

std::size_t aligned(std::size_t place, std::size_t to)
{
    return (place + to - 1) / to * to;
}

void writeText(WireWriter& writer, Field field, std::string_view type, std::string_view value)
{
    if (value.empty())
        return;
    writer.align(8);
    writer.integer(field, 1);
    writer.signature(type);
    if (type == "g")
        writer.signature(value);
    else
        writer.text(value);
}

void writeNumber(WireWriter& writer, Field field, std::uint32_t value)
{
    if (value == 0)
        return;
    writer.align(8);
    writer.integer(field, 1);
    writer.signature("u");
    writer.integer(value);
}

void writeFields(WireWriter& writer, const WireMessage& message)
{
    writeText(writer, path, "o", message.path);
    writeText(writer, interface, "s", message.interface);
    writeText(writer, member, "s", message.member);
    writeText(writer, error, "s", message.error);
    writeNumber(writer, answered, message.answered);
    writeText(writer, destination, "s", message.destination);
    writeText(writer, sender, "s", message.sender);
    writeText(writer, signature, "g", message.signature);
    writeNumber(writer, descriptors, message.descriptors);
}

std::string* textField(WireMessage& message, std::uint8_t field)
{
    switch (field) {
    case path:
        return &message.path;
    case interface:
        return &message.interface;
    case member:
        return &message.member;
    case error:
        return &message.error;
    case destination:
        return &message.destination;
    case sender:
        return &message.sender;
    case signature:
        return &message.signature;
    default:
        return nullptr;
    }
}

/// Reads the field at `place`, and moves `place` behind it.
void readField(WireMessage& message, std::string_view bytes, std::size_t& place)
{
    const auto field = static_cast<std::uint8_t>(bytes[place]);
    const char type = bytes[place + 2];
    place += 4; // the field, and its signature of one letter
    std::size_t length = 0;
    if (type == 'u') {
        if (field == answered)
            message.answered = numberIn(bytes, place);
        else if (field == descriptors)
            message.descriptors = numberIn(bytes, place);
        place += 4;
        return;
    }
    if (type == 'g') {
        length = static_cast<std::uint8_t>(bytes[place]);
        place += 1;
    } else {
        length = numberIn(bytes, place);
        place += 4;
    }
    if (std::string* const text = textField(message, field))
        *text = bytes.substr(place, length);
    place += length + 1;
}

} // namespace

std::string WireMessage::textAt(std::size_t place) const
{
    place = aligned(place, 4);
    if (place + 4 > body.size())
        return {};
    const std::size_t length = numberIn(body, place);
    return place + 4 + length <= body.size() ? body.substr(place + 4, length) : std::string{};
}

std::uint32_t WireMessage::numberAt(std::size_t place) const
{
    place = aligned(place, 4);
    return place + 4 <= body.size() ? numberIn(body, place) : 0;
}

std::string encoded(const WireMessage& message)
{
    WireWriter writer;
    writer.integer('l', 1);
    writer.integer(static_cast<std::uint8_t>(message.kind), 1);
    writer.integer(message.flags, 1);
    writer.integer(1, 1);
    writer.integer(message.body.size());
    writer.integer(message.serial);
    writer.array(8, [&] { writeFields(writer, message); });
    writer.align(8);
    return writer.bytes() + message.body;
}

std::optional<std::size_t> wireLength(std::string_view bytes)
{
    if (bytes.size() < fixedHeader)
        return std::nullopt;
    return aligned(fixedHeader + numberIn(bytes, 12), 8) + numberIn(bytes, 4);
}

WireMessage decoded(std::string_view bytes)
{
    WireMessage message;
    message.kind = static_cast<WireMessage::Kind>(bytes[1]);
    message.flags = static_cast<std::uint8_t>(bytes[2]);
    message.serial = numberIn(bytes, 8);
    const std::size_t end = fixedHeader + numberIn(bytes, 12);
    for (std::size_t place = fixedHeader; place < end;) {
        readField(message, bytes, place);
        place = aligned(place, 8);
    }
    message.body = bytes.substr(aligned(end, 8));
    return message;
}

} // namespace tallyfox
