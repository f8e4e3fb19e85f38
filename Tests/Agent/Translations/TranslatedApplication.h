#pragma once

#include "Tallyfox/Agent/Theme/Translations.h"

#include <QCoreApplication>
#include <QLocale>
#include <QTranslator>

namespace tallyfox::test {

/// Installs the translations and the formats of `locale` while it exists.
class TranslatedApplication {
public:
    explicit TranslatedApplication(const QLocale& locale)
    {
        QLocale::setDefault(locale);
        installTranslations(*QCoreApplication::instance(), locale);
    }

    ~TranslatedApplication()
    {
        qDeleteAll(QCoreApplication::instance()->findChildren<QTranslator*>());
        QLocale::setDefault(m_before);
    }

    TranslatedApplication(const TranslatedApplication&) = delete;
    TranslatedApplication& operator=(const TranslatedApplication&) = delete;

private:
    QLocale m_before;
};

inline QLocale german()
{
    return {QLocale::German, QLocale::Germany};
}

} // namespace tallyfox::test
