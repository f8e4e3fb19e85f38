#pragma once

#include <QObject>

#include <string>
#include <vector>

class QDBusMessage;

namespace tallyfox::test {

/// Records the signals that its slot is connected to.
class SignalRecorder : public QObject {
    Q_OBJECT

public:
    /// The member of each signal and its arguments, separated by "|": strings verbatim, maps as their keys.
    std::vector<std::string> list;

public Q_SLOTS:
    void record(const QDBusMessage& signal);
};

} // namespace tallyfox::test
