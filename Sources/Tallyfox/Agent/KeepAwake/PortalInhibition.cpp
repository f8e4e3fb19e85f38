#include "Tallyfox/Agent/KeepAwake/PortalInhibition.h"

namespace tallyfox {

namespace {

constexpr unsigned portalSuspendFlag = 4;

} // namespace

PortalInhibition::PortalInhibition(const InhibitionContext& context)
    : m_request(context.keeper, context.bus, QStringLiteral("Inhibit.Inhibit"), {QString{}, portalSuspendFlag},
                {{QStringLiteral("reason"), context.reason}})
{
    connect(&m_request, &PortalRequest::succeeded, this, &PortalInhibition::grant);
    connect(&m_request, &PortalRequest::failed, this, &PortalInhibition::fail);
}

} // namespace tallyfox
