#include "Tallyfox/Agent/KeepAwake/CaffeineController.h"

namespace tallyfox {

CaffeineController::CaffeineController(SleepInhibitor& inhibitor, QObject* parent)
    : QObject(parent)
    , m_inhibitor(inhibitor)
{ }

CaffeineController::~CaffeineController() = default;

bool CaffeineController::isEnabled() const
{
    return m_isEnabled;
}

void CaffeineController::toggle()
{
    setActivity(m_activity ? nullptr
                           : m_inhibitor.begin(tr("Tallyfox Keep Mac Awake", "why the computer does not sleep")));
}

void CaffeineController::setActivity(std::unique_ptr<SleepInhibition> activity)
{
    m_activity = std::move(activity);
    if (m_activity) {
        connect(m_activity.get(), &SleepInhibition::began, this, [this] { setEnabled(true); });
        connect(m_activity.get(), &SleepInhibition::ended, this, [this] { setActivity(nullptr); });
    } else {
        setEnabled(false);
    }
}

void CaffeineController::setEnabled(bool isEnabled)
{
    if (m_isEnabled == isEnabled)
        return;
    m_isEnabled = isEnabled;
    Q_EMIT isEnabledPublished(isEnabled);
}

} // namespace tallyfox
