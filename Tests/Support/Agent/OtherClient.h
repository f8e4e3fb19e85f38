#pragma once

#include "Support/Agent/PrivateDisplay.h"

#include <cstdint>

struct xcb_connection_t;

namespace tallyfox::test {

/// Another client of a display, which grabs keys. They are free again when it is destroyed.
class OtherClient {
public:
    explicit OtherClient(const PrivateDisplay& display);
    ~OtherClient();
    OtherClient(const OtherClient&) = delete;
    OtherClient& operator=(const OtherClient&) = delete;

    /// Grabs a key with these modifiers; returns whether it was free.
    [[nodiscard]] bool grab(std::uint16_t modifiers, std::uint8_t key);
    /// Grabs a key without modifiers as window managers do that show an overview when it is pressed alone.
    [[nodiscard]] bool grabAlone(std::uint8_t key);

private:
    xcb_connection_t* m_connection;
    std::uint32_t m_root;
};

} // namespace tallyfox::test
