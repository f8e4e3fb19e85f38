#pragma once

#include "Tallyfox/Agent/Controls/Card.h"

namespace tallyfox {

/// The invitation to let the program read the histories: pressed, it asks for the home folder.
class HomeAccessInvitation : public CardButton {
    Q_OBJECT

public:
    explicit HomeAccessInvitation(QWidget* parent = nullptr);
};

} // namespace tallyfox
