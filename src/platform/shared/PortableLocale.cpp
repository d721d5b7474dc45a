#include "platform/shared/PortableLocale.h"

#include <cmath>

using namespace Qt::StringLiterals;

PortableLocale::PortableLocale(const QLocale &locale)
    : m_locale(locale)
    , m_format(locale.dateFormat(QLocale::ShortFormat))
{
    if (!m_format.contains("yyyy"_L1))
        m_format.replace("yy"_L1, "yyyy"_L1);
}

QString PortableLocale::shortDate(QDate date)
{
    return m_locale.toString(date, m_format);
}

QDate PortableLocale::fromShortDate(const QString &text)
{
    return m_locale.toDate(text.trimmed(), m_format);
}

bool PortableLocale::isNumeric(const QString &text)
{
    bool ok = false;
    const double number = m_locale.toDouble(text.trimmed(), &ok);
    return ok && std::isfinite(number);
}
