#include "Tallyfox/Agent/Theme/TranslatedText.h"

#include <QCoreApplication>

#include <string>

namespace tallyfox {

QString translatedText(std::string_view text)
{
    return QCoreApplication::translate("UsageStore", std::string{text}.c_str());
}

} // namespace tallyfox
