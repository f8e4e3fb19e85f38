#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace tallyfox {

/// One message on a bus, its body in wire format.
struct WireMessage {
    enum class Kind : std::uint8_t { call = 1, answer = 2, error = 3, signal = 4 };
    static constexpr std::uint8_t noAnswerWanted = 1;

    Kind kind = Kind::call;
    std::uint8_t flags = 0;
    std::uint32_t serial = 0; ///< set when it is sent
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

/// The length of the message that begins with `bytes`; nothing when there are too few to know.
std::optional<std::size_t> wireLength(std::string_view bytes);

/// `bytes` must be one well-formed message.
WireMessage decoded(std::string_view bytes);

} // namespace tallyfox
