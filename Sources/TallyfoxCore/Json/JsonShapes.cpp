#include "TallyfoxCore/Json/JsonShapes.h"

#include "TallyfoxCore/Json/JsonScan.h"

#include <span>

namespace tallyfox {

namespace {

constexpr std::ptrdiff_t padding = byteScan::width;

bool beginsNumber(char character)
{
    return (character >= '0' && character <= '9') || character == '-';
}

/// Whether the quotation mark at `closing` ends a key of a grammatical text.
bool endsKey(const char* closing, const char* end)
{
    const char* next = closing + 1;
    while (next != end && (*next == ' ' || *next == '\t' || *next == '\n' || *next == '\r'))
        ++next;
    return next != end && *next == ':';
}

} // namespace

/// A grammatical text, cut into its pieces.
class JsonShapes::Cut {
public:
    explicit Cut(std::string_view text)
        : m_next(text.data())
        , m_end(text.data() + text.size())
    {
        do
            m_pieces[m_size++] = next();
        while (m_size < m_pieces.size() && m_pieces[m_size - 1].follower != Follower::end);
    }

    /// Whether the text has no more values than can be kept.
    [[nodiscard]] bool isWhole() const
    {
        return m_pieces[m_size - 1].follower == Follower::end;
    }
    [[nodiscard]] std::span<const TextPiece> pieces() const
    {
        return std::span(m_pieces).first(m_size);
    }

private:
    /// The piece from the value found last, or from the begin, up to the next value or to the end.
    TextPiece next()
    {
        const char* const begin = m_next;
        while (m_next != m_end && !beginsNumber(*m_next)) {
            const bool isString = *m_next++ == '"';
            if (isString && !takeKey())
                return pieceFrom(begin, Follower::string);
        }
        return pieceFrom(begin, m_next == m_end ? Follower::end : Follower::number);
    }

    /// Passes over the string whose text begins here, if it is a key.
    bool takeKey()
    {
        bool hasEscapes = false;
        const char* const closing = jsonScan::stringEnd(m_next, m_end, hasEscapes);
        const bool isKey = endsKey(closing, m_end);
        if (isKey)
            m_next = closing + 1;
        return isKey;
    }

    /// Ends a piece here, and passes over the value behind it.
    TextPiece pieceFrom(const char* begin, Follower follower)
    {
        const TextPiece piece{{begin, static_cast<std::size_t>(m_next - begin)}, follower};
        bool hasEscapes = false;
        if (follower == Follower::string)
            m_next = jsonScan::stringEnd(m_next, m_end, hasEscapes) + 1;
        else if (follower == Follower::number)
            m_next = jsonScan::numberEnd(m_next, m_end);
        return piece;
    }

    const char* m_next;
    const char* m_end;
    std::array<TextPiece, mostValues + 1> m_pieces;
    std::size_t m_size = 0;
};

JsonShapes::JsonShapes()
    : m_bytes(padding)
{ }

inline bool JsonShapes::standsAt(const Piece& piece, const char* text, const char* end) const
{
    const auto left = static_cast<std::size_t>(end - text);
    if (left < piece.size || !equalsPadded(text, left, m_bytes.data() + piece.begin, piece.size))
        return false;
    const char* const behind = text + piece.size;
    switch (piece.follower) {
    case Follower::string:
        return true;
    case Follower::number:
        return behind != end && beginsNumber(*behind);
    default:
        return behind == end;
    }
}

/// The one of `first` and its siblings that stands at `text`. At most one can: where two of them begin alike, the
/// character behind tells which one it is.
inline JsonShapes::Piece* JsonShapes::pieceAt(Piece* first, const char* text, const char* end) const
{
    while (first != nullptr && !standsAt(*first, text, end))
        first = first->sibling;
    return first;
}

/// The quotation mark that ends the string behind a piece; null if there is none.
inline const char* JsonShapes::stringEnd(Piece& piece, const char* begin, const char* end, bool& hasEscapes)
{
    // Ids and times are mostly as long as the last time. To try that first lets the processor go on with what follows
    // before it knows where the string ends.
    if (jsonScan::isStringOfSize(piece.usualSize, begin, end))
        return begin + piece.usualSize;
    const char* const stringEnd = jsonScan::stringEnd(begin, end, hasEscapes);
    if (stringEnd != nullptr)
        piece.usualSize = static_cast<std::uint32_t>(stringEnd - begin);
    return stringEnd;
}

/// Takes the value behind a piece. Where the next piece may begin, behind the closing quotation mark of a string; null
/// if the value is ungrammatical.
inline const char* JsonShapes::takeValue(Piece& piece, const char* begin, const char* end, JsonString& value)
{
    const bool isString = piece.follower == Follower::string;
    value.hasEscapes = false;
    const char* const valueEnd =
        isString ? stringEnd(piece, begin, end, value.hasEscapes) : jsonScan::numberEnd(begin, end);
    if (valueEnd == nullptr)
        return nullptr;
    value.raw = std::string_view(begin, static_cast<std::size_t>(valueEnd - begin));
    return isString ? valueEnd + 1 : valueEnd;
}

std::optional<std::size_t> JsonShapes::match(std::string_view text, Values& values)
{
    const char* next = text.data();
    const char* const end = next + text.size();
    JsonString* value = values.data();
    Piece* piece = pieceAt(m_first, next, end);
    while (piece != nullptr && piece->follower != Follower::end) {
        const char* const begin = next + piece->size;
        next = takeValue(*piece, begin, end, *value++);
        piece = next == nullptr ? nullptr : pieceAt(piece->child, next, end);
    }
    return piece == nullptr ? std::nullopt : std::optional<std::size_t>(piece->shape);
}

/// The link to the wanted piece: `link` itself or that of a sibling; else an empty one, or null when there are very
/// many siblings.
JsonShapes::Piece** JsonShapes::linkTo(Piece** link, const TextPiece& wanted) const
{
    for (std::size_t count = 0; count < mostSiblings; ++count) {
        Piece* const piece = *link;
        if (piece == nullptr || (piece->follower == wanted.follower && bytesOf(*piece) == wanted.bytes))
            return link;
        link = &piece->sibling;
    }
    return nullptr;
}

JsonShapes::Piece* JsonShapes::append(const TextPiece& added)
{
    const auto begin = m_bytes.size() - padding;
    m_bytes.insert(m_bytes.end() - padding, added.bytes.begin(), added.bytes.end());
    Piece& piece = m_pieces.emplace_back();
    piece.begin = static_cast<std::uint32_t>(begin);
    piece.size = static_cast<std::uint32_t>(added.bytes.size());
    piece.follower = added.follower;
    if (added.follower == Follower::end)
        piece.shape = static_cast<std::uint32_t>(m_size++);
    return &piece;
}

std::optional<std::size_t> JsonShapes::learn(std::string_view text)
{
    if (m_refusals == mostRefusals)
        return std::nullopt;
    const Piece* const last = lastPieceOf(text);
    if (last == nullptr) {
        ++m_refusals;
        return std::nullopt;
    }
    return last->shape;
}

/// The piece with which `text` ends, learned with all those before it; null if there is no room.
const JsonShapes::Piece* JsonShapes::lastPieceOf(std::string_view text)
{
    const Cut cut(text);
    const bool fits = m_pieces.size() + cut.pieces().size() <= mostPieces && m_bytes.size() + text.size() <= mostBytes;
    if (!cut.isWhole() || !fits)
        return nullptr;
    Piece** link = &m_first;
    const Piece* last = nullptr;
    for (const TextPiece& piece : cut.pieces()) {
        link = linkTo(link, piece);
        if (link == nullptr)
            return nullptr;
        if (*link == nullptr)
            *link = append(piece);
        last = *link;
        link = &(*link)->child;
    }
    return last;
}

} // namespace tallyfox
