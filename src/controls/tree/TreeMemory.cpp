#include "controls/tree/TreeMemory.h"

#include <QCryptographicHash>
#include <QSettings>

using namespace Qt::StringLiterals;

namespace {
constexpr QChar between(0x1f); // stands in no name

/// A name that settings can have, whatever the folder is called.
QString keyOf(const QString &folder)
{
    return QString::fromLatin1(
        QCryptographicHash::hash(folder.toUtf8(), QCryptographicHash::Sha1).toHex());
}

QString joined(const QStringList &place)
{
    return place.join(between);
}
} // namespace

void TreeMemory::remember(const QString &folder, const TreeState &state)
{
    QSettings settings;
    settings.beginGroup(u"ProjectTree"_s);
    QStringList recent = settings.value("Recent").toStringList();
    const QString key = keyOf(folder);
    recent.removeAll(key);
    recent.prepend(key);
    while (recent.size() > projectsKept)
        settings.remove(recent.takeLast());
    settings.setValue("Recent", recent);

    QStringList expanded;
    for (const QStringList &place : state.expanded)
        expanded.append(joined(place));
    settings.beginGroup(key);
    settings.setValue("Expanded", expanded);
    settings.setValue("Chosen", joined(state.chosen));
    settings.setValue("Scrolled", state.scrolled);
}

TreeState TreeMemory::recall(const QString &folder)
{
    QSettings settings;
    settings.beginGroup(u"ProjectTree/"_s + keyOf(folder));
    TreeState state;
    for (const QString &place : settings.value("Expanded").toStringList())
        state.expanded.append(place.split(between));
    state.chosen = settings.value("Chosen").toString().split(between, Qt::SkipEmptyParts);
    state.scrolled = settings.value("Scrolled").toInt();
    return state;
}
