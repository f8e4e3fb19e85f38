#pragma once

#include "Tallyfox/Agent/Desktop/ActivationPolicy.h"

#include <QList>
#include <QObject>
#include <QPointer>
#include <QWidget>

namespace tallyfox {

/// The policy under X11; elsewhere it does nothing, as Wayland has no words for it.
class TaskbarActivationPolicy : public QObject, public ActivationPolicySwitch {
    Q_OBJECT

public:
    void addWindow(QWidget& window) override;
    void setPolicy(ActivationPolicy policy) override;

    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void apply(QWidget& window, bool isShown) const;

    QList<QPointer<QWidget>> m_windows;
    ActivationPolicy m_policy = ActivationPolicy::accessory;
};

} // namespace tallyfox
