#include "Bus/ServiceAnswers.h"

#include "Bus/AnyValues.h"

namespace tallyfox {

namespace {

void set(WireMessage& message, std::string_view signature, const WireWriter& writer)
{
    message.signature = signature;
    message.body = writer.bytes();
}

/// Some portals send an object path, others a string.
void writeSession(FuzzInput& input, WireWriter& writer)
{
    const std::string path = "/org/freedesktop/portal/desktop/session/1_1/s" + std::to_string(input.byte());
    writer.pair("session_handle", input.flip() ? "o" : "s", [&] { writer.text(path); });
}

void writeShortcuts(FuzzInput& input, WireWriter& writer)
{
    writer.pair("shortcuts", "a(sa{sv})", [&] {
        writer.array(8, [&] {
            writer.align(8);
            writer.text(input.below(8) == 7 ? AnyValues::text(input) : "toggle-popover");
            std::string_view types = "a{sv}";
            AnyValues::write(input, writer, types);
        });
    });
}

} // namespace

bool ServiceAnswers::fill(FuzzInput& input, const AskedCall& asked, WireMessage& answer)
{
    const WireMessage& call = asked.call;
    WireWriter writer;
    if (isPortalCall(call)) {
        writer.text(input.below(8) == 7 ? AnyValues::objectPath(input) : asked.handle);
        set(answer, "o", writer);
    } else if (isLoginCall(call)) {
        writer.integer(0); // the first descriptor
        set(answer, "h", writer);
        return true;
    } else if (call.member == "GetNameOwner") {
        writer.text(input.flip() ? ":1.5" : ":1.6");
        set(answer, "s", writer);
    } else if (call.member == "Get") {
        writer.signature("b");
        writer.integer(input.flip() ? 1 : 0);
        set(answer, "v", writer);
    } else if (call.member == "setShortcutKeys") {
        AnyValues::fill(input, answer, "a(ai)");
    } else if (call.member != "RegisterStatusNotifierItem") {
        AnyValues::fill(input, answer, call.member == "GetCapabilities" ? "as" : "u");
    }
    return false;
}

void ServiceAnswers::fillResponse(FuzzInput& input, const AskedCall& asked, WireMessage& response)
{
    WireWriter writer;
    writer.integer(input.below(8) == 7 ? input.below(4) : 0);
    writer.array(8, [&] {
        if (asked.call.member == "CreateSession")
            writeSession(input, writer);
        else if (asked.call.member == "BindShortcuts")
            writeShortcuts(input, writer);
    });
    set(response, "ua{sv}", writer);
}

} // namespace tallyfox
