#include "Bus/ServiceAnswers.h"

#include "Bus/AnyValues.h"
#include "Bus/HostileBus.h"

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
        writer.signature("u"); // the version of the portal
        writer.integer(input.below(3));
        set(answer, "v", writer);
    } else if (call.member == "setShortcutKeys") {
        AnyValues::fill(input, answer, "a(ai)");
    } else if (call.member == "GetAll") {
        const bool hasHost = input.flip();
        answer.signature = "a{sv}";
        answer.body = watcherProperties(hasHost, input.below(4) != 3);
    } else if (call.member != "RegisterStatusNotifierItem") {
        AnyValues::fill(input, answer, call.member == "GetCapabilities" ? "as" : "u");
    }
    return false;
}

std::string ServiceAnswers::watcherProperties(bool hasHost, bool isListed)
{
    WireWriter writer;
    writer.array(8, [&] {
        writer.pair("IsStatusNotifierHostRegistered", "b", [&] { writer.integer(hasHost ? 1 : 0); });
        writer.pair("RegisteredStatusNotifierItems", "as", [&] {
            writer.array(4, [&] {
                writer.text(std::string{HostileBus::uniqueName} + "7/StatusNotifierItem"); // another's
                if (isListed)
                    writer.text(std::string{HostileBus::uniqueName} + "@/StatusNotifierItem");
            });
        });
    });
    return writer.bytes();
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
