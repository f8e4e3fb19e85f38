#pragma once

#include <QWidget>

namespace tallyfox {

/// The program's symbol on a large tile.
class LogoTile : public QWidget {
    Q_OBJECT

public:
    explicit LogoTile(QWidget* parent = nullptr);

protected:
    void paintEvent(QPaintEvent* event) override;
};

} // namespace tallyfox
