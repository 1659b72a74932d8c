#pragma once

#include "options/ui/COptionsPage.h"

namespace zelto {

// "Queue": whether failed transfers join the queue, how often and how many times it resends
// them, and what happens to the queue when the program starts.
class CQueuePage final : public COptionsPage {
    Q_OBJECT
public:
    explicit CQueuePage(QWidget* parent = nullptr);
};

} // namespace zelto
