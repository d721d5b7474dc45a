#pragma once

#include <QString>

/// "1 page" or "7,300 pages": `one` as it is, `many` with its %1.
QString counted(qsizetype count, const QString &one, const QString &many);
