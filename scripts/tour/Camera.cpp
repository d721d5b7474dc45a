#include "Camera.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QKeyEvent>
#include <QPixmap>
#include <QTimer>

#include <cstdio>
#include <cstdlib>

using namespace Qt::StringLiterals;

void Camera::take(QWidget *window, const QString &name, const QString &caption)
{
    settle();
    const QString file = u"%1-%2.png"_s.arg(++m_count, 2, 10, QChar(u'0')).arg(name);
    if (!window->grab().save(m_folder.filePath(file)))
        tourFails(u"The picture cannot be written: "_s + file);
    std::printf("%s  %s\n", qUtf8Printable(file), qUtf8Printable(caption));
    std::fflush(stdout);
}

void settle(int milliseconds)
{
    QElapsedTimer since;
    since.start();
    do {
        QCoreApplication::processEvents(QEventLoop::AllEvents, 10);
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    } while (since.elapsed() < milliseconds);
}

QPointer<QObject> whenModal(const std::function<void(QWidget *)> &act, bool orProgress)
{
    auto *timer = new QTimer(qApp);
    QObject::connect(timer, &QTimer::timeout, timer, [timer, act, orProgress] {
        QWidget *modal = QApplication::activeModalWidget();
        if (!modal || !modal->isVisible())
            return;
        if (!orProgress && modal->objectName() == "frmProgBar"_L1)
            return;
        timer->stop();
        timer->deleteLater();
        act(modal);
    });
    timer->start(5);
    return timer;
}

void type(QWidget *field, const QString &text)
{
    for (const QChar character : text) {
        QKeyEvent press(QEvent::KeyPress, 0, Qt::NoModifier, character);
        QCoreApplication::sendEvent(field, &press);
    }
}

void tourFails(const QString &reason)
{
    std::fprintf(stderr, "The tour cannot go on: %s\n", qUtf8Printable(reason));
    std::exit(1);
}
