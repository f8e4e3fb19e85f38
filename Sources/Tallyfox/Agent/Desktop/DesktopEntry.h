#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace tallyfox {

/// A desktop entry file, of whose main group single keys are read and changed. All other text is kept verbatim. Values
/// are unescaped strings.
class DesktopEntry {
public:
    /// `text` may be any bytes.
    explicit DesktopEntry(std::string_view text);

    [[nodiscard]] std::optional<std::string> value(std::string_view key) const;
    /// Whether a key's value is "true".
    [[nodiscard]] bool isTrue(std::string_view key) const;
    void set(std::string_view key, std::string_view value);
    void remove(std::string_view key);

    [[nodiscard]] std::string text() const;

private:
    struct Line {
        std::string text; ///< without its line feed
        std::string key{}; ///< empty unless it is a key of the main group
        bool opensMainGroup = false;
    };

    std::vector<Line> m_lines;
};

/// A command line that starts `program` without arguments, as the value of "Exec".
std::string execValue(const std::filesystem::path& program);

/// The program that the value of an "Exec" starts: a path or a name; nothing for an invalid value.
std::optional<std::string> execProgram(std::string_view exec);

} // namespace tallyfox
