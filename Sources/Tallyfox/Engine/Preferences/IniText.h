#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace tallyfox {

/// The text of an INI file as a list of lines, of which single ones are read and changed. Everything else stays as it
/// is: comments, other sections, keys of a later version. Keys are those of the section "General".
class IniText {
public:
    /// Any bytes.
    explicit IniText(std::string_view text);

    /// The value of a key: of its last line when it has several. Bytes come back as they were set; other values are
    /// UTF-8 text without the quotes and escapes of the file.
    [[nodiscard]] std::optional<std::string> value(std::string_view key) const;

    /// Sets a value of printable ASCII without quotes, backslashes, commas and semicolons: a number or a word.
    void setPlain(std::string_view key, std::string_view value);
    /// Sets a value of any bytes.
    void setBytes(std::string_view key, std::string_view bytes);
    void remove(std::string_view key);

    /// Takes out the lines that are neither empty, a comment, a section nor a key with a value; whether there were any.
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
