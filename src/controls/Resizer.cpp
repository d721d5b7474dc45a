#include "controls/Resizer.h"

#include <QEvent>
#include <QScreen>
#include <QSettings>
#include <QSplitter>

using namespace Qt::StringLiterals;

namespace {

constexpr auto geometryKey = "Geometry"_L1;

/// The splitters of `kept`, itself included, that have a name to be known by.
QList<QSplitter *> splittersOf(QWidget *kept)
{
    QList<QSplitter *> splitters = kept->findChildren<QSplitter *>();
    if (auto *const own = qobject_cast<QSplitter *>(kept))
        splitters.prepend(own);
    splitters.removeIf([](const QSplitter *one) { return one->objectName().isEmpty(); });
    return splitters;
}

} // namespace

Resizer::Resizer(const QString &name, QWidget *kept)
    : QObject(kept)
    , m_name(u"Layout/"_s + name)
    , m_kept(kept)
{
    if (kept->isWindow())
        restoreWindow();
    else
        restoreSplitters(); // what is never shown keeps what is remembered of it
    kept->installEventFilter(this);
}

// A place on a screen that has gone is corrected by restoreGeometry itself.
void Resizer::restoreWindow()
{
    QSettings settings;
    settings.beginGroup(m_name);
    if (!m_kept->restoreGeometry(settings.value(geometryKey).toByteArray()))
        m_kept->resize(m_kept->size().boundedTo(m_kept->screen()->availableSize()));
}

void Resizer::restoreSplitters()
{
    QSettings settings;
    settings.beginGroup(m_name);
    for (QSplitter *const splitter : splittersOf(m_kept))
        splitter->restoreState(settings.value(splitter->objectName()).toByteArray());
}

void Resizer::remember() const
{
    QSettings settings;
    settings.beginGroup(m_name);
    if (m_kept->isWindow()) {
        settings.setValue(geometryKey, m_kept->saveGeometry());
        return;
    }
    for (const QSplitter *const splitter : splittersOf(m_kept))
        settings.setValue(splitter->objectName(), splitter->saveState());
}

bool Resizer::eventFilter(QObject *watched, QEvent *event)
{
    // Splitters know their size from the first showing on.
    if (event->type() == QEvent::Show && !m_kept->isWindow() && !m_restored) {
        m_restored = true;
        restoreSplitters();
    }
    if (event->type() == QEvent::Hide && !event->spontaneous())
        remember();
    return QObject::eventFilter(watched, event);
}
