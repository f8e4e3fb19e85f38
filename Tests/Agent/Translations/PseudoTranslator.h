#pragma once

#include <QString>
#include <QTranslator>

namespace tallyfox::test {

/// A language that nobody speaks: each text in brackets, with strange letters, half as long again. What shows without
/// brackets was never translated, and what does not fit would not fit in some real language either. While it lives, the
/// application speaks it.
class PseudoTranslator : public QTranslator {
public:
    PseudoTranslator();

    QString translate(const char* context, const char* text, const char* comment, int number) const override;
    bool isEmpty() const override;
};

/// `text` in that language; placeholders, mnemonics and line ends stay.
QString pseudoText(const QString& text);

} // namespace tallyfox::test
