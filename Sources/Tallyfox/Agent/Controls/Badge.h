#pragma once

#include "Tallyfox/Agent/Controls/TextLabel.h"

namespace tallyfox {

/// A short word on a faint patch of its own colour.
class Badge : public TextLabel {
    Q_OBJECT

public:
    explicit Badge(QWidget* parent = nullptr);
    Badge(const QString& text, const QColor& color, QWidget* parent = nullptr);

protected:
    void paintEvent(QPaintEvent* event) override;
};

} // namespace tallyfox
