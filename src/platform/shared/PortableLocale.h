#pragma once

#include "platform/SystemLocale.h"

#include <QLocale>

/// The regional settings of the system, with years of four digits.
class PortableLocale final : public SystemLocale
{
public:
    explicit PortableLocale(const QLocale &locale = QLocale::system());

    [[nodiscard]] QString shortDate(QDate date) override;
    [[nodiscard]] QDate fromShortDate(const QString &text) override;
    [[nodiscard]] bool isNumeric(const QString &text) override;

private:
    QLocale m_locale;
    QString m_format;
};
