#include "Tallyfox/Engine/Store/UsageStore.h"

#include "Tallyfox/Engine/Store/RefreshRun.h"
#include "TallyfoxCore/Usage/TokenSum.h"

#include <QEvent>
#include <QPointer>

#include <algorithm>

namespace tallyfox {

namespace {

constexpr std::string_view accessMessage =
    QT_TRANSLATE_NOOP("UsageStore", "Choose your home folder to read Claude and Codex usage metadata.");

const ProviderState* findState(Provider provider, const std::vector<ProviderState>& states)
{
    const auto state = std::find_if(states.begin(), states.end(),
                                    [&](const ProviderState& each) { return each.provider == provider; });
    return state == states.end() ? nullptr : &*state;
}

} // namespace

UsageStore::UsageStore(StoreEnvironment environment, QObject* parent)
    : QObject(parent)
    , m_environment(std::move(environment))
    , m_calendar(m_environment.calendar())
    , m_hasHomeAccess(m_environment.authorizedHomeURL().has_value())
{
    for (const Provider provider : allProviders)
        m_states.push_back(initialState(provider, m_environment.now(), m_calendar));
}

UsageStore::~UsageStore()
{
    if (m_run)
        m_run->abandon();
    if (m_environment.endFetches)
        m_environment.endFetches();
}

UsageSnapshot UsageStore::snapshot() const
{
    return {.states = m_states,
            .isRefreshing = m_isRefreshing,
            .lastUpdated = m_lastUpdated,
            .combinedPercent = m_combinedPercent,
            .hasHomeAccess = m_hasHomeAccess,
            .now = m_environment.now(),
            .calendar = m_calendar};
}

void UsageStore::customEvent(QEvent* /*event*/)
{
    const RefreshRun::Updates updates = m_run->takeUpdates();
    m_calendar = m_run->calendar();
    m_run.reset();
    std::vector<ProviderState> states;
    for (const ProviderUpdate& update : updates)
        states.push_back(merge(update, findState(update.provider, m_states), m_environment.now(), m_calendar));
    publish(std::move(states));
}

void UsageStore::publish(std::vector<ProviderState> states)
{
    const bool isAlive = assign(m_states, std::move(states), &UsageStore::statesPublished)
        && assign(m_lastUpdated, std::optional{m_environment.now()}, &UsageStore::lastUpdatedPublished)
        && assign(m_combinedPercent, tallyfox::combinedPercent(m_states), &UsageStore::combinedPercentPublished);
    if (isAlive)
        setRefreshing(false);
}

bool UsageStore::setRefreshing(bool isRefreshing)
{
    return assign(m_isRefreshing, isRefreshing, &UsageStore::isRefreshingPublished, isRefreshing);
}

bool UsageStore::setHomeAccess(bool hasAccess)
{
    return assign(m_hasHomeAccess, hasAccess, &UsageStore::hasHomeAccessPublished, hasAccess);
}

/// Assigns and emits. Returns false when an observer has destroyed the store: no member may be used then.
template <typename Value, typename Signal, typename... Arguments>
bool UsageStore::assign(Value& property, Value value, Signal signal, Arguments... arguments)
{
    const QPointer<UsageStore> store{this};
    property = std::move(value);
    Q_EMIT(this->*signal)(arguments...);
    return !store.isNull();
}

void UsageStore::refresh()
{
    if (m_isRefreshing)
        return;
    if (setRefreshing(true))
        m_run = std::make_unique<RefreshRun>(m_environment, this);
}

void UsageStore::setRefreshInterval(std::int64_t minutes)
{
    constexpr std::int64_t secondsPerMinute = 60;
    std::int64_t seconds = 0;
    if (__builtin_mul_overflow(std::max<std::int64_t>(minutes, 1), secondsPerMinute, &seconds))
        stopProgram("the refresh interval has more seconds than 64 bits hold");
    m_interval = std::chrono::seconds{seconds};
    const std::chrono::seconds interval = std::min(*m_interval, RefreshTimer::maximumInterval);
    m_timer.arm(interval.count() * m_environment.minute / secondsPerMinute);
}

void UsageStore::requestHomeAccess()
{
    if (!m_environment.picker)
        return;
    const HomeFolderPicker::Request request{.startFolder = m_environment.accountHome(),
                                            .message = std::string{accessMessage}};
    // The dialog may outlive the store. The grant is stored even then.
    m_environment.picker->begin(request,
                                [store = QPointer<UsageStore>{this}, grantHome = m_environment.grantHome](
                                    const std::optional<std::filesystem::path>& folder) {
                                    if (!folder)
                                        return;
                                    const bool isGranted = grantHome(*folder);
                                    if (store && store->setHomeAccess(isGranted) && isGranted)
                                        store->refresh();
                                });
}

} // namespace tallyfox
