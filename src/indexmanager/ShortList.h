#pragma once

#include <QStringList>

/// The first few of these, with how many more there are: a label must not grow over the screen.
QString shortList(const QStringList &texts, const QString &separator);
