#pragma once

#include <QDate>
#include <QLocale>
#include <QString>

#include <memory>

namespace tallyfox {

/// Writes dates in the abbreviated style of a locale: "Nov 15, 2026" in English. Making one costs some twenty times
/// what a date costs: one serves a whole list.
class DayFormat {
public:
    explicit DayFormat(const QLocale& locale = {});
    ~DayFormat();
    DayFormat(const DayFormat&) = delete;
    DayFormat& operator=(const DayFormat&) = delete;

    [[nodiscard]] QString text(QDate day) const;

private:
    class Pattern;
    QLocale m_locale;
    std::unique_ptr<Pattern> m_pattern; ///< null where the locale has none
};

} // namespace tallyfox
