#pragma once

#include <QObject>

#include <string>
#include <vector>

class QDBusMessage;

namespace tallyfox::test {

/// Writes down the signals that its slot is connected to.
class SignalRecorder : public QObject {
    Q_OBJECT

public:
    /// Of each signal the member, then its arguments: texts as they are, maps by their keys; between them "|".
    std::vector<std::string> list;

public Q_SLOTS:
    void record(const QDBusMessage& signal);
};

} // namespace tallyfox::test
