#pragma once

#include "Tallyfox/Agent/Popover/TabView.h"

#include <memory>
#include <vector>

class QVBoxLayout;

namespace tallyfox {

class PushButton;
class TextLabel;

/// The fourth tab: the services with their status, and buttons to refresh and to grant access.
class ServicesView : public TabView {
    Q_OBJECT

public:
    explicit ServicesView(QWidget* parent = nullptr);
    ~ServicesView() override;

    void setUsage(const UsageSnapshot& snapshot) override;

private:
    class Row;

    void addHeader(QVBoxLayout& layout);
    void addRows(QVBoxLayout& layout);
    void addFooter(QVBoxLayout& layout);
    void drawProviders(const std::vector<ProviderState>& states);

    TextLabel* m_count;
    PushButton* m_access;
    QVBoxLayout* m_rows = nullptr;
    std::vector<std::unique_ptr<Row>> m_providers; ///< owned here: the number of states may decrease
};

} // namespace tallyfox
