#pragma once

#include "Tallyfox/Engine/Store/UsageStore.h"

namespace tallyfox {

/// What a load needs of the outside world: a copy of its own, so that it may outlive the store.
struct LoadEnvironment {
    decltype(UsageStoreEnvironment::now) now;
    decltype(UsageStoreEnvironment::calendar) calendar;
    decltype(UsageStoreEnvironment::authorizedHomeURL) authorizedHomeURL;
    decltype(UsageStoreEnvironment::fetchQuota) fetchQuota;
};

/// Loads one provider once: its history first, then its quota, if it has one. Every failure, also whatever is thrown,
/// becomes part of the update. Any thread.
ProviderUpdate loadProvider(Provider provider, const LoadEnvironment& environment,
                            const std::stop_token& stop) noexcept;

/// The update of a load that could not even be started.
ProviderUpdate failedLoad(Provider provider, const LoadEnvironment& environment) noexcept;

} // namespace tallyfox
