#pragma once

#include "Tallyfox/Agent/Popover/TabView.h"

#include <memory>

namespace tallyfox {

/// The fourth tab: the services, how each does, and what to do about it.
class ServicesView : public TabView {
    Q_OBJECT

public:
    explicit ServicesView(QWidget* parent = nullptr);
    ~ServicesView() override;

    void setUsage(const UsageSnapshot& snapshot) override;

private:
    class Private;
    std::unique_ptr<Private> m;
};

} // namespace tallyfox
