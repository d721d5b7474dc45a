#pragma once

#include "platform/windows/win32/DesktopWindows.h"

#include <QObject>

/// Announces a window of this program to our other programs, as long as this object lives.
class WindowAnnouncer final : public QObject
{
    Q_OBJECT

public:
    WindowAnnouncer(const QString &className, const QString &caption, QObject *parent = nullptr);

    /// False when the window works but will not be found.
    [[nodiscard]] bool isListening() const { return m_announcement.isMade(); }

Q_SIGNALS:
    /// Another program wants the window in front, maximized; kind and topic of a help request may
    /// be empty.
    void raiseRequested(const QString &kind, const QString &topic);
    /// Another program wants the window closed, as by its close box.
    void closeRequested();

private:
    win32::Announcement m_announcement;
};
