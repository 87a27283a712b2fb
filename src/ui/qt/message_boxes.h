#pragma once
// The dialogs' message boxes as real boxes, modal over the active dialog.
#include "dialogs/messages.h"

class QWidget;

namespace vx::ui {

class QtMessages : public dialogs::Messages {
public:
    // `fallbackParent` serves when no modal dialog is active.
    explicit QtMessages(QWidget* fallbackParent = nullptr) : fallbackParent_(fallbackParent) {}
    bool show(const dialogs::Message& box) override;

private:
    QWidget* fallbackParent_;
};

} // namespace vx::ui
