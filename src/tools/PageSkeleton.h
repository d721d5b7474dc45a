#pragma once

#include <QByteArray>
#include <QString>

/// A whole page in HTML: UTF-8 declared, lines ending in "\n", with the language attribute of the
/// project's language (ENU, DEU, ...; none for an unknown one). `body` is HTML, whole lines.
QString wholePage(const QString &title, const QString &projectLanguage, const QString &body);

/// What a new page begins as: title, heading and an empty paragraph, in UTF-8, lines ending in
/// "\r\n".
QByteArray newPage(const QString &title, const QString &projectLanguage);

/// What pages in the project's language (ENU, DEU, ...) declare: "en", "zh-CN"; "" for an unknown
/// one.
QLatin1StringView languageTag(const QString &projectLanguage);
