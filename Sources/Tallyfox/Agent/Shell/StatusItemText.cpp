#include "Tallyfox/Agent/Shell/StatusItemText.h"

#include <QCoreApplication>

namespace tallyfox {

StatusItemContent statusItemContent(std::optional<std::int64_t> combinedPercent)
{
    if (!combinedPercent)
        return {.title = {}, .accessibilityLabel = QStringLiteral("Tallyfox")};
    const QString number = QString::number(*combinedPercent);
    return {.title = QStringLiteral(" %1%").arg(number),
            .accessibilityLabel = QCoreApplication::translate("StatusItem", "Tallyfox, %1 percent used").arg(number)};
}

} // namespace tallyfox
