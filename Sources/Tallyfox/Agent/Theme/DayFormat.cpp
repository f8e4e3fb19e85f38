#include "Tallyfox/Agent/Theme/DayFormat.h"

#include <QDateTime>
#include <QTimeZone>

#include <unicode/datefmt.h>
#include <unicode/locid.h>
#include <unicode/timezone.h>
#include <unicode/unistr.h>

namespace tallyfox {

/// The toolkit's own styles are either all digits or with the month's whole name: ICU has the one between.
class DayFormat::Pattern {
public:
    static std::unique_ptr<Pattern> ofLocale(const QLocale& locale)
    {
        UErrorCode status = U_ZERO_ERROR;
        const icu::Locale icuLocale = icu::Locale::forLanguageTag(locale.bcp47Name().toStdString(), status);
        auto pattern = std::make_unique<Pattern>();
        pattern->m_format.reset(
            icu::DateFormat::createInstanceForSkeleton(icu::UnicodeString{u"yMMMd"}, icuLocale, status));
        if (U_FAILURE(status) || !pattern->m_format)
            return nullptr;
        pattern->m_format->adoptTimeZone(icu::TimeZone::getGMT()->clone());
        return pattern;
    }

    QString text(QDate day) const
    {
        icu::UnicodeString text;
        m_format->format(static_cast<UDate>(day.startOfDay(Qt::UTC).toMSecsSinceEpoch()), text);
        return QString::fromUtf16(text.getBuffer(), text.length());
    }

private:
    std::unique_ptr<icu::DateFormat> m_format;
};

DayFormat::DayFormat(const QLocale& locale)
    : m_locale(locale)
    , m_pattern(Pattern::ofLocale(locale))
{ }

DayFormat::~DayFormat() = default;

QString DayFormat::text(QDate day) const
{
    return m_pattern ? m_pattern->text(day) : m_locale.toString(day, QLocale::ShortFormat);
}

} // namespace tallyfox
