#include "resources/Counted.h"

#include <QLocale>

QString counted(qsizetype count, const QString &one, const QString &many)
{
    return count == 1 ? one : many.arg(QLocale(QLocale::English).toString(qlonglong(count)));
}
