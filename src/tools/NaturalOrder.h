#pragma once

#include <QStringView>

/// True when `a` comes before `b` as people sort file names: "page2" before "page10", without
/// regard to case; a folder's index page (index, default) before everything else in it.
bool naturallyBefore(QStringView a, QStringView b);

/// "index.htm", "index.de.html", "default.html" and the like, without a folder.
bool isIndexPage(QStringView fileName);
