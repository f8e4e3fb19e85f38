#include "Tallyfox/Engine/Store/UsageStore.h"

#include "Tallyfox/Engine/Store/RefreshRun.h"
#include "Tallyfox/Engine/Store/RefreshTimer.h"
#include "TallyfoxCore/Usage/TokenSum.h"

#include <QEvent>
#include <QPointer>

#include <algorithm>

namespace tallyfox {

namespace {

constexpr std::string_view accessMessage =
    QT_TRANSLATE_NOOP("UsageStore", "Choose your home folder to read Claude and Codex usage metadata.");

const ProviderState* stateOf(Provider provider, const std::vector<ProviderState>& states)
{
    const auto state = std::find_if(states.begin(), states.end(),
                                    [&](const ProviderState& each) { return each.provider == provider; });
    return state == states.end() ? nullptr : &*state;
}

} // namespace

/// Also the receiver of the refresh's event.
class UsageStore::Private : public QObject {
public:
    Private(UsageStore* store, StoreEnvironment environment)
        : m_store(store)
        , m_environment(std::move(environment))
        , m_calendar(m_environment.calendar())
        , m_hasHomeAccess(m_environment.authorizedHomeURL().has_value())
    {
        for (const Provider provider : allProviders)
            m_states.push_back(initialState(provider, m_environment.now(), m_calendar));
    }

    ~Private() override
    {
        if (m_run)
            m_run->abandon();
        if (m_environment.endFetches)
            m_environment.endFetches();
    }

    void customEvent(QEvent* /*event*/) override
    {
        const RefreshRun::Updates updates = m_run->takeUpdates();
        m_calendar = m_run->calendar();
        m_run.reset();
        publish(merged(updates));
    }

    void startRun()
    {
        m_run = std::make_unique<RefreshRun>(m_environment, this);
    }

    /// Assigns and tells. False when an observer has destroyed the store: there is nothing left to go on with.
    template <typename Value, typename Signal, typename... Arguments>
    bool assign(Value& property, Value value, Signal signal, Arguments... arguments)
    {
        const QPointer<UsageStore> store{m_store};
        property = std::move(value);
        Q_EMIT(m_store->*signal)(arguments...);
        return !store.isNull();
    }

    bool setRefreshing(bool isRefreshing)
    {
        return assign(m_isRefreshing, isRefreshing, &UsageStore::isRefreshingPublished, isRefreshing);
    }

    bool setHomeAccess(bool hasAccess)
    {
        return assign(m_hasHomeAccess, hasAccess, &UsageStore::hasHomeAccessPublished, hasAccess);
    }

    UsageStore* m_store;
    StoreEnvironment m_environment;
    Calendar m_calendar; ///< the one that the days of `m_states` were counted with
    std::vector<ProviderState> m_states;
    bool m_isRefreshing = false;
    std::optional<Instant> m_lastUpdated;
    std::optional<std::int64_t> m_combinedPercent;
    bool m_hasHomeAccess;
    std::optional<std::chrono::seconds> m_interval;
    RefreshTimer m_timer{[this] { m_store->refresh(); }};
    std::unique_ptr<RefreshRun> m_run; ///< set while refreshing

private:
    std::vector<ProviderState> merged(const RefreshRun::Updates& updates) const
    {
        std::vector<ProviderState> states;
        for (const ProviderUpdate& update : updates) {
            states.push_back(merge(update, stateOf(update.provider, m_states), m_environment.now(), m_calendar));
        }
        return states;
    }

    void publish(std::vector<ProviderState> states)
    {
        const bool isAlive = assign(m_states, std::move(states), &UsageStore::statesPublished)
            && assign(m_lastUpdated, std::optional{m_environment.now()}, &UsageStore::lastUpdatedPublished)
            && assign(m_combinedPercent, tallyfox::combinedPercent(m_states), &UsageStore::combinedPercentPublished);
        if (isAlive)
            setRefreshing(false);
    }
};

UsageStore::UsageStore(StoreEnvironment environment, QObject* parent)
    : QObject(parent)
    , m(std::make_unique<Private>(this, std::move(environment)))
{ }

UsageStore::~UsageStore() = default;

const std::vector<ProviderState>& UsageStore::states() const
{
    return m->m_states;
}

bool UsageStore::isRefreshing() const
{
    return m->m_isRefreshing;
}

std::optional<Instant> UsageStore::lastUpdated() const
{
    return m->m_lastUpdated;
}

std::optional<std::int64_t> UsageStore::combinedPercent() const
{
    return m->m_combinedPercent;
}

bool UsageStore::hasHomeAccess() const
{
    return m->m_hasHomeAccess;
}

UsageSnapshot UsageStore::snapshot() const
{
    return {.states = m->m_states,
            .isRefreshing = m->m_isRefreshing,
            .lastUpdated = m->m_lastUpdated,
            .combinedPercent = m->m_combinedPercent,
            .hasHomeAccess = m->m_hasHomeAccess,
            .now = m->m_environment.now(),
            .calendar = m->m_calendar};
}

void UsageStore::refresh()
{
    if (m->m_isRefreshing)
        return;
    if (m->setRefreshing(true))
        m->startRun();
}

void UsageStore::setRefreshInterval(std::int64_t minutes)
{
    constexpr std::int64_t secondsPerMinute = 60;
    std::int64_t seconds = 0;
    if (__builtin_mul_overflow(std::max<std::int64_t>(minutes, 1), secondsPerMinute, &seconds))
        stopProgram("the refresh interval has more seconds than 64 bits hold");
    m->m_interval = std::chrono::seconds{seconds};
    m->m_timer.arm(std::min(*m->m_interval, RefreshTimer::maximumInterval));
}

std::optional<std::chrono::seconds> UsageStore::refreshInterval() const
{
    return m->m_interval;
}

void UsageStore::requestHomeAccess()
{
    if (!m->m_environment.picker)
        return;
    const HomeFolderPicker::Request request{.startFolder = m->m_environment.accountHome(),
                                            .message = std::string{accessMessage}};
    // The dialog may outlive the store. The user's choice is kept even then.
    m->m_environment.picker->begin(request,
                                   [store = QPointer<UsageStore>{this}, grantHome = m->m_environment.grantHome](
                                       const std::optional<std::filesystem::path>& folder) {
                                       if (!folder)
                                           return;
                                       const bool isGranted = grantHome(*folder);
                                       if (store && store->m->setHomeAccess(isGranted) && isGranted)
                                           store->refresh();
                                   });
}

} // namespace tallyfox
