#pragma once

#include "TallyfoxCore/Json/JsonToken.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <deque>
#include <optional>
#include <string_view>
#include <vector>

namespace tallyfox {

/// Knows JSON texts by their shape: by all their bytes but those of strings and numbers that stand as values.
///
/// Programs write record after record in the same way, so that only these values differ. A text with the shape of a
/// grammatical one is itself grammatical if each of its values is; that takes comparing the bytes between the values,
/// which is much faster than reading them.
///
/// The shapes form a tree of the pieces between values, in which a text is followed from its begin. Memory is bounded:
/// beyond that, and for texts with very many values, shapes are not learned.
class JsonShapes {
public:
    static constexpr std::size_t mostValues = 128; ///< in a text whose shape is learned
    static constexpr std::size_t mostPieces = 8192; ///< of all shapes
    static constexpr std::size_t mostBytes = 262'144; ///< of all pieces
    static constexpr std::size_t mostSiblings = 16; ///< pieces that may follow one piece
    static constexpr std::size_t mostRefusals = 256; ///< texts there was no room for, before no more is learned

    /// The values of a text in their order: the raw text of strings and of numbers. Views of the text.
    using Values = std::array<JsonString, mostValues>;

    JsonShapes();
    JsonShapes(const JsonShapes&) = delete;
    JsonShapes& operator=(const JsonShapes&) = delete;

    /// The number of the shape that `text` has, if it is a known one and `text` is grammatical. Sets as many of
    /// `values` as the text has; the others are left in any state. Does not allocate.
    std::optional<std::size_t> match(std::string_view text, Values& values);

    /// Learns the shape of `text`, which must be grammatical. The shape's number: they are numbered from 0 in the order
    /// in which they were learned. Nothing if there is no room for it.
    std::optional<std::size_t> learn(std::string_view text);

private:
    /// What stands behind a piece.
    enum class Follower { string, number, end };

    /// The bytes from one value to the next one, with the quotation mark before a string.
    struct Piece {
        Piece* child = nullptr; ///< the first piece that may follow
        Piece* sibling = nullptr; ///< one more that may stand in the place of this one
        std::uint32_t begin = 0; ///< in `m_bytes`
        std::uint32_t size = 0;
        std::uint32_t usualSize = 0; ///< of a string that follows: the size of the last one
        std::uint32_t shape = 0; ///< whose last piece this is, if `follower` is the end
        Follower follower = Follower::end;
    };

    /// A piece of a text that is being learned.
    struct TextPiece {
        std::string_view bytes;
        Follower follower = Follower::end;
    };
    class Cut;

    [[nodiscard]] std::string_view bytesOf(const Piece& piece) const
    {
        return {m_bytes.data() + piece.begin, piece.size};
    }
    [[nodiscard]] bool standsAt(const Piece& piece, const char* text, const char* end) const;
    [[nodiscard]] Piece* pieceAt(Piece* first, const char* text, const char* end) const;
    static const char* stringEnd(Piece& piece, const char* begin, const char* end, bool& hasEscapes);
    static const char* takeValue(Piece& piece, const char* begin, const char* end, JsonString& value);
    Piece** linkTo(Piece** link, const TextPiece& wanted) const;
    Piece* append(const TextPiece& added);
    const Piece* lastPieceOf(std::string_view text);

    std::deque<Piece> m_pieces; ///< which stay where they are
    std::vector<char> m_bytes; ///< of all pieces, and a block behind them, so that they can be compared in blocks
    Piece* m_first = nullptr;
    std::size_t m_size = 0;
    std::size_t m_refusals = 0;
};

} // namespace tallyfox
