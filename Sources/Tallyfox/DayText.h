#pragma once

#include <QDate>
#include <QLocale>
#include <QString>

namespace tallyfox {

/// A date in the abbreviated style of `locale`: "Nov 15, 2026" in English.
QString dayText(QDate day, const QLocale& locale = {});

} // namespace tallyfox
