#include "Agent/Translations/PseudoTranslator.h"

#include <QCoreApplication>

namespace tallyfox::test {

namespace {

QChar strange(QChar letter)
{
    static const QString plain = QStringLiteral("AEIOUYaeiouycnst");
    static const QString strange = QStringLiteral(u"ÅËÏÖÜÝåëïöüýçñšŧ");
    const auto index = plain.indexOf(letter);
    return index < 0 ? letter : strange.at(index);
}

} // namespace

QString pseudoText(const QString& text)
{
    QString result{QLatin1Char{'['}};
    for (qsizetype index = 0; index < text.size(); ++index) {
        const bool isPlaceholder = index > 0 && text.at(index - 1) == QLatin1Char{'%'};
        result += isPlaceholder ? text.at(index) : strange(text.at(index));
    }
    result += QLatin1Char{' '};
    result += QString{(text.size() + 1) / 2, QLatin1Char{'~'}};
    return result + QLatin1Char{']'};
}

PseudoTranslator::PseudoTranslator()
{
    QCoreApplication::installTranslator(this);
}

QString PseudoTranslator::translate(const char* /*context*/, const char* text, const char* /*comment*/,
                                    int /*number*/) const
{
    return pseudoText(QString::fromUtf8(text));
}

bool PseudoTranslator::isEmpty() const
{
    return false;
}

} // namespace tallyfox::test
