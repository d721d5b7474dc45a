#include "platform/shared/DrivesFolder.h"

#include <QStandardPaths>

using namespace Qt::StringLiterals;

QString drivesFolder()
{
    if (const QString named = qEnvironmentVariable("QUOVANE_DRIVES"); !named.isEmpty())
        return named;
#ifdef Q_OS_WIN
    return {};
#else
    const QString home = QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation);
    return home + u"/quovane/drives"_s;
#endif
}
