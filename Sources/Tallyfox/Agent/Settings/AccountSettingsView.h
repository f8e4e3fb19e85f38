#pragma once

#include "Tallyfox/Agent/Settings/SettingsForm.h"
#include "Tallyfox/Engine/Store/UsageSnapshot.h"

#include <QPointer>

#include <vector>

namespace tallyfox {

class PushButton;

/// The "Accounts" tab: the status of each provider's account, and the access to the home folder.
class AccountSettingsView : public SettingsForm {
    Q_OBJECT

public:
    explicit AccountSettingsView(QWidget* parent = nullptr);

    void setUsage(const UsageSnapshot& snapshot);

Q_SIGNALS:
    void refreshRequested();
    void homeAccessRequested();

private:
    class Row;

    void addConnectedAccounts();
    void addLocalHistory();
    void showStates(const std::vector<ProviderState>& states);
    void showRefreshing(bool isRefreshing);
    void showHomeAccess(bool hasHomeAccess);

    SettingsSection* m_accountSection = nullptr;
    std::vector<Row*> m_rows;
    PushButton* m_sync;
    QPointer<QWidget> m_focusWhileRefreshing; ///< got the focus when the button was disabled
    SettingsValue* m_homeAccess = nullptr;
    QWidget* m_grantRow = nullptr;
};

} // namespace tallyfox
