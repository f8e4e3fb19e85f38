#pragma once

#include "Tallyfox/Agent/Controls/Card.h"
#include "Tallyfox/Agent/Theme/ServiceRow.h"

namespace tallyfox {

class TextLabel;

/// A service on a card of its own: icon, name over detail, and the status at the right.
class ServiceRowView : public Card {
    Q_OBJECT

public:
    explicit ServiceRowView(QWidget* parent = nullptr);

    void setRow(const ServiceRow& row);
    [[nodiscard]] const ServiceRow& row() const;

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    ServiceRow m_row;
    TextLabel* m_name;
    TextLabel* m_detail;
    TextLabel* m_status;
};

} // namespace tallyfox
