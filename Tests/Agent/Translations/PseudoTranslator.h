#pragma once

#include <QString>
#include <QTranslator>

namespace tallyfox::test {

/// A pseudo-language: each text in brackets, with accented letters, and fifty percent longer. A text without brackets
/// was not translated, and one that does not fit would not fit in some real language either. Installed while the
/// object exists.
class PseudoTranslator : public QTranslator {
public:
    PseudoTranslator();

    QString translate(const char* context, const char* text, const char* comment, int number) const override;
    bool isEmpty() const override;
};

/// `text` in that language; keeps placeholders, mnemonics and line ends.
QString pseudoText(const QString& text);

} // namespace tallyfox::test
