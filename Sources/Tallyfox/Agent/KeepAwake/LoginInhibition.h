#pragma once

#include "Tallyfox/Agent/KeepAwake/InhibitionRequest.h"

#include <QDBusUnixFileDescriptor>

namespace tallyfox {

/// The system's login manager, asked not to take the session for idle; in force while its descriptor is open. Never
/// asked not to sleep: that would hold off the sleep which the user asks for.
class LoginInhibition : public InhibitionRequest {
    Q_OBJECT

public:
    /// The bus of `context` is the system bus.
    explicit LoginInhibition(const InhibitionContext& context);

private:
    QDBusUnixFileDescriptor m_hold;
};

} // namespace tallyfox
