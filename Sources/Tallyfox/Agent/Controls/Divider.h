#pragma once

#include <QWidget>

namespace tallyfox {

/// A thin line across its parent.
class Divider : public QWidget {
    Q_OBJECT

public:
    explicit Divider(QWidget* parent = nullptr);

protected:
    void paintEvent(QPaintEvent* event) override;
};

} // namespace tallyfox
