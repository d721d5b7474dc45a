#include "tools/migration/LegacyRows.h"

using namespace Qt::StringLiterals;

QString rowName(QLatin1StringView key, const std::optional<int> &id, int row)
{
    return id ? key + u" %1"_s.arg(*id) : u"row %1"_s.arg(row);
}
