#include "Camera.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QFile>
#include <QKeyEvent>
#include <QPixmap>
#include <QTimer>

#include <cstdio>
#include <cstdlib>

using namespace Qt::StringLiterals;

void Camera::take(QWidget *window, const QString &name, const QString &caption)
{
    settle();
    const QString file = nextFile(name, u"png"_s);
    if (!window->grab().save(m_folder.filePath(file)))
        tourFails(u"The picture cannot be written: "_s + file);
    tell(file, caption);
}

void Camera::note(const QString &text, const QString &name, const QString &caption)
{
    const QString file = nextFile(name, u"txt"_s);
    QFile out(m_folder.filePath(file));
    const QByteArray bytes = text.toUtf8();
    if (!out.open(QIODevice::WriteOnly) || out.write(bytes) != bytes.size() || !out.flush())
        tourFails(u"The text cannot be written: "_s + file);
    tell(file, caption);
}

QString Camera::nextFile(const QString &name, const QString &ending)
{
    return u"%1-%2.%3"_s.arg(++m_count, 3, 10, QChar(u'0')).arg(name, ending);
}

void Camera::tell(const QString &file, const QString &caption)
{
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
