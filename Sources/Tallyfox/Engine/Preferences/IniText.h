#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace tallyfox {

/// The text of an INI file as a list of lines. Changing a key leaves everything else unchanged: comments, other
/// sections, and keys of later versions. Keys are those of the section "General".
class IniText {
public:
    /// Accepts any bytes.
    explicit IniText(std::string_view text);

    /// The value of a key, the last one if it has several. Returns bytes as they were set, and other values as UTF-8
    /// without quotes and escapes.
    [[nodiscard]] std::optional<std::string> value(std::string_view key) const;

    /// Sets a number or a word: printable ASCII without quotes, backslashes, commas and semicolons.
    void setPlain(std::string_view key, std::string_view value);
    /// Sets a value of any bytes.
    void setBytes(std::string_view key, std::string_view bytes);
    void remove(std::string_view key);

    /// Removes the lines that are neither empty, a comment, a section nor a key with a value; returns whether there
    /// were any.
    bool removeDamage();

    [[nodiscard]] std::string text() const;

private:
    struct Line {
        std::string text; ///< without its line feed
        std::optional<std::string> key{}; ///< of a key in the section "General"
        bool opensGeneral = false; ///< the title of that section
        bool isDamaged = false;
    };

    void setLine(std::string_view key, std::string line);
    static Line readLine(std::string_view text, bool& isInGeneral);

    std::vector<Line> m_lines;
};

} // namespace tallyfox
