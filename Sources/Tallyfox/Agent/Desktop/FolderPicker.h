#pragma once

#include "Tallyfox/Engine/Store/StoreEnvironment.h"

#include <QObject>

#include <memory>
#include <vector>

class QFileDialog;

namespace tallyfox {

/// The desktop's own dialog for choosing a folder, beside the program's other windows, which stay usable. There is one
/// at a time: who asks while it is open brings it to the front, and gets no folder. Requests that are open when the
/// object ends are answered with none. Main thread.
class FolderPicker : public QObject, public HomeFolderPicker {
    Q_OBJECT

public:
    FolderPicker();
    ~FolderPicker() override;

    void begin(const Request& request, Completion completion) override;

Q_SIGNALS:
    /// The dialog is about to come up or to the front: the last moment to close what would hold the keyboard.
    void aboutToOpen();

private:
    void open(const Request& request);
    void finish(int result);

    std::unique_ptr<QFileDialog> m_dialog; ///< while it is open
    std::vector<Completion> m_completions; ///< the first is who the dialog was opened for
};

} // namespace tallyfox
