#pragma once

#include "Tallyfox/Engine/Store/StoreEnvironment.h"

#include <QObject>

#include <memory>
#include <vector>

class QFileDialog;

namespace tallyfox {

/// The desktop's own dialog for choosing a folder. It is not modal. A request that comes while it is open raises it,
/// and gets no folder. The destructor answers pending requests with no folder. Main thread.
class FolderPicker : public QObject, public HomeFolderPicker {
    Q_OBJECT

public:
    FolderPicker();
    ~FolderPicker() override;

    void begin(const Request& request, Completion completion) override;

Q_SIGNALS:
    /// The dialog is about to be shown or raised: the last moment to close a popup that holds the keyboard.
    void aboutToOpen();

private:
    void open(const Request& request);
    void finish(int result);

    std::unique_ptr<QFileDialog> m_dialog; ///< while it is open
    std::vector<Completion> m_completions; ///< the first one gets the chosen folder
};

} // namespace tallyfox
