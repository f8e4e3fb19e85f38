#include "Tallyfox/DayText.h"

#include <QDateTime>
#include <QTimeZone>

#include <memory>
#include <unicode/datefmt.h>
#include <unicode/locid.h>
#include <unicode/timezone.h>
#include <unicode/unistr.h>

namespace tallyfox {

QString dayText(QDate day, const QLocale& locale)
{
    UErrorCode status = U_ZERO_ERROR;
    const icu::Locale icuLocale = icu::Locale::forLanguageTag(locale.bcp47Name().toStdString(), status);
    // The toolkit's own styles are either all digits or with the month's whole name.
    const std::unique_ptr<icu::DateFormat> format{
        icu::DateFormat::createInstanceForSkeleton(icu::UnicodeString{u"yMMMd"}, icuLocale, status)};
    if (U_FAILURE(status) || !format)
        return locale.toString(day, QLocale::ShortFormat);
    format->adoptTimeZone(icu::TimeZone::getGMT()->clone());
    icu::UnicodeString text;
    format->format(static_cast<UDate>(day.startOfDay(Qt::UTC).toMSecsSinceEpoch()), text);
    return QString::fromUtf16(text.getBuffer(), text.length());
}

} // namespace tallyfox
