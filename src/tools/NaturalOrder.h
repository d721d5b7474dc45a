#pragma once

#include <QString>
#include <QStringView>

// The order in which people sort names: "page2" before "page10", without regard to case. Keys are
// made once for many comparisons and compared character by character.

/// Appends the key of a text: numbers by their value, both slashes alike and before all else.
void appendNaturalKey(QString &keys, QStringView text);

/// The key of a page by its relative path: the index page of a folder stands before everything else
/// in it.
QString naturalPageKey(QStringView path);

/// "index.htm", "index.de.html", "default.html" and the like, without a folder.
bool isIndexPage(QStringView fileName);
