#include "viewer/Bookmarks.h"

#include <QSettings>

using namespace Qt::StringLiterals;

namespace {

constexpr auto group = "Viewer/Bookmarks"_L1;

} // namespace

QList<Bookmark> readBookmarks()
{
    QList<Bookmark> bookmarks;
    QSettings settings;
    const int count = settings.beginReadArray(group);
    for (int i = 0; i < count; ++i) {
        settings.setArrayIndex(i);
        bookmarks.append(
            {settings.value("Title"_L1).toString(),
             {settings.value("Set"_L1).toString(), settings.value("Page"_L1).toString(),
              settings.value("Anchor"_L1).toString()}});
    }
    return bookmarks;
}

void writeBookmarks(const QList<Bookmark> &bookmarks)
{
    QSettings settings;
    settings.remove(group);
    settings.beginWriteArray(group, static_cast<int>(bookmarks.size()));
    for (int i = 0; i < bookmarks.size(); ++i) {
        settings.setArrayIndex(i);
        settings.setValue("Title"_L1, bookmarks[i].title);
        settings.setValue("Set"_L1, bookmarks[i].place.set);
        settings.setValue("Page"_L1, bookmarks[i].place.page);
        settings.setValue("Anchor"_L1, bookmarks[i].place.anchor);
    }
    settings.endArray();
}
