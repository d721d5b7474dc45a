#include "platform/windows/WindowAnnouncer.h"

// Who asks waits for the answer: what is asked is done after it.
WindowAnnouncer::WindowAnnouncer(const QString &className, const QString &caption, QObject *parent)
    : QObject(parent)
    , m_announcement(className.toStdWString(), caption.toStdWString(),
                     {[this](const win32::HelpRequest &request) {
                          QMetaObject::invokeMethod(
                              this,
                              [this, kind = QString::fromStdWString(request.kind),
                               topic = QString::fromStdWString(request.topic)] {
                                  Q_EMIT raiseRequested(kind, topic);
                              },
                              Qt::QueuedConnection);
                      },
                      [this] {
                          QMetaObject::invokeMethod(
                              this, [this] { Q_EMIT closeRequested(); }, Qt::QueuedConnection);
                      }})
{
}
