#pragma once

#include "Tallyfox/Agent/Controls/Card.h"

class QVBoxLayout;

namespace tallyfox {

/// A card with a headline, and below it whatever its owner adds.
class TitledCard : public Card {
    Q_OBJECT

public:
    explicit TitledCard(const QString& title, QWidget* parent = nullptr);

    /// Where content goes; made with the card as its parent.
    [[nodiscard]] QVBoxLayout& content() const;

private:
    QVBoxLayout* m_content;
};

} // namespace tallyfox
