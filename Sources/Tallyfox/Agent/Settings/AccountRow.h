#pragma once

#include <QWidget>

namespace tallyfox {

class TextLabel;
struct ProviderState;

/// One provider's account: its symbol, name and detail, and at the far side how it does.
class AccountRow : public QWidget {
    Q_OBJECT

public:
    explicit AccountRow(const ProviderState& state, QWidget* parent = nullptr);

    /// Shows another state of the same provider.
    void setState(const ProviderState& state);

private:
    TextLabel* m_name;
    TextLabel* m_detail;
    TextLabel* m_status;
};

} // namespace tallyfox
