#include "Bus/KdeShortcutModel.h"

#include <utility>

namespace tallyfox {

unsigned KdeShortcutModel::numberOf(const WireMessage& call)
{
    if (call.member == "setShortcutKeys")
        ++m_heard;
    return m_heard;
}

void KdeShortcutModel::noteAnswer(const AskedCall& asked, const WireMessage& answer)
{
    if (!m_isPending || asked.appointment != m_registration)
        return;
    m_isPending = false;
    m_isServed = answer.kind == WireMessage::Kind::answer && answer.signature == "a(ai)";
    m_service = m_isServed ? answer.sender : std::string{};
}

void KdeShortcutModel::noteOwner(const std::string& before, const std::string& after)
{
    const bool startsByTheCall = m_isPending && before.empty();
    if (!after.empty() && (after == m_service || startsByTheCall))
        return;
    m_service.clear();
    m_isServed = m_isPending = !after.empty();
    if (m_isPending) {
        ++m_registration;
        m_isHeld = false;
    }
}

bool KdeShortcutModel::noteKeys(const std::string& sender, bool isPress)
{
    if (m_service.empty() || sender != m_service)
        return false;
    return !std::exchange(m_isHeld, isPress) && isPress;
}

} // namespace tallyfox
