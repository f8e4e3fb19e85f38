#pragma once

#include "Tallyfox/Agent/Bus/PortalRequest.h"
#include "Tallyfox/Agent/KeepAwake/InhibitionRequest.h"

namespace tallyfox {

/// The desktop portal, asked not to suspend; in force until the request is closed.
class PortalInhibition : public InhibitionRequest {
    Q_OBJECT

public:
    explicit PortalInhibition(const InhibitionContext& context);

private:
    PortalRequest m_request;
};

} // namespace tallyfox
