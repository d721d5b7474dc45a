#include "dbtoxml/EarlyEnd.h"

using namespace Qt::StringLiterals;

EarlyEnd damagedFile(const QString &path, const QString &what)
{
    return {ConversionEnd::Damaged,
            u"%1 is damaged: %2. Repair it with the program it was made with, or take an older "
            "copy of it."_s.arg(path, what)};
}
