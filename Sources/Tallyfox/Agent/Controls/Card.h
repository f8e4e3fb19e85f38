#pragma once

#include <QFrame>

namespace tallyfox {

/// The sheet that groups what belongs together: a rounded rectangle in the surface colour with a thin border. Lays
/// out nothing itself; the padding is the layout's.
class Card : public QFrame {
    Q_OBJECT

public:
    explicit Card(QWidget* parent = nullptr);

    /// Paints the sheet into `frame`.
    static void paint(QPainter& painter, const QRectF& frame);

protected:
    void paintEvent(QPaintEvent* event) override;
};

} // namespace tallyfox
