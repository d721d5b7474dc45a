#pragma once

#include "viewer/ViewerPlace.h"

#include <QList>

struct Bookmark
{
    QString title;
    ViewerPlace place;
};

/// The reader's bookmarks, kept in the user's settings.
QList<Bookmark> readBookmarks();
void writeBookmarks(const QList<Bookmark> &bookmarks);
