#include "components/MissingConverter.h"

#include "platform/QvError.h"

using namespace Qt::StringLiterals;

namespace {

[[noreturn]] void raiseMissing()
{
    throw QvError(
        ComponentMissing, u"qv_dbtoxml"_s,
        u"The database-to-XML converter (qv_dbtoxml) is not installed, so legacy book sets "
        "cannot be migrated on this machine. Nothing was created. Add the project as new "
        "or as a copy instead, or install the converter"_s);
}

} // namespace

void MissingConverter::convert(const QString &, const QString &, const QString &, const QString &,
                               const QString &)
{
    raiseMissing();
}

bool MissingConverter::completed()
{
    raiseMissing();
}
