#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace tallyfox {

/// One message of a bus, its body as it goes over the wire.
struct WireMessage {
    enum class Kind : std::uint8_t { call = 1, answer = 2, error = 3, signal = 4 };
    static constexpr std::uint8_t noAnswerWanted = 1;

    Kind kind = Kind::call;
    std::uint8_t flags = 0;
    std::uint32_t serial = 0; ///< given by the bus's end when it sends
    std::uint32_t answered = 0; ///< the serial of the call
    std::string path{};
    std::string interface { };
    std::string member{};
    std::string error{}; ///< its name
    std::string destination{};
    std::string sender{};
    std::string signature{};
    std::string body{};
    std::uint32_t descriptors = 0; ///< that come with it

    [[nodiscard]] bool wantsAnswer() const
    {
        return kind == Kind::call && (flags & noAnswerWanted) == 0;
    }
    [[nodiscard]] bool isAnswer() const
    {
        return kind == Kind::answer || kind == Kind::error;
    }
    /// The string that begins at `place` of the body; empty when there is none.
    [[nodiscard]] std::string textAt(std::size_t place) const;
    [[nodiscard]] std::uint32_t numberAt(std::size_t place) const;
};

std::string encoded(const WireMessage& message);

/// How long the message is of which `bytes` are the beginning; nothing while that cannot be told.
std::optional<std::size_t> wireLength(std::string_view bytes);

/// What the bus library of the program has sent: a whole message, which is well-formed.
WireMessage decoded(std::string_view bytes);

} // namespace tallyfox
