#include "catalogue/RankRule.h"

#include "platform/SystemLocale.h"

std::optional<int> rankIn(const QString &text, SystemLocale &locale)
{
    if (text.contains(u'.') || text.contains(u',') || !locale.isNumeric(text))
        return std::nullopt;
    bool ok = false;
    const double value = text.toDouble(&ok); // "1e3" is numeric too
    if (!ok || !(value >= 1 && value < 32001))
        return std::nullopt;
    return static_cast<int>(value);
}
