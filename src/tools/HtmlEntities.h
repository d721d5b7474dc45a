#pragma once

#include <QString>

/// `text` with its character references ("&amp;", "&#228;", "&#xE4;") replaced by what they mean.
/// References that are unknown or unfinished stay as they are.
QString withoutEntities(QStringView text);

/// The same with runs of blanks and line ends made one blank and none at the ends: text as a
/// title shows it.
QString plainText(QStringView text);
