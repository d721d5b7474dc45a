#pragma once

#include "support/FormDriver.h"

#include <functional>

/// Looks at the modal dialog that comes next and presses one of its buttons.
inline void answerDialog(
    const char *button, const std::function<void(const QWidget *)> &look = [](const QWidget *) {})
{
    QTimer::singleShot(0, qApp, [button, look] {
        QWidget *const dialog = QApplication::activeModalWidget();
        if (dialog == nullptr)
            qFatal("No dialog came");
        look(dialog);
        control<QPushButton>(dialog, button)->click();
    });
}
