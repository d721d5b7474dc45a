#pragma once

#include <QDate>
#include <QString>

/// The system's regional settings.
class SystemLocale
{
public:
    virtual ~SystemLocale() = default;
    [[nodiscard]] virtual QString shortDate(QDate date) = 0;
    [[nodiscard]] virtual QDate fromShortDate(const QString &text) = 0; ///< invalid when it is none
    /// The classic test: integers and decimal numbers in the system's notation count.
    [[nodiscard]] virtual bool isNumeric(const QString &text) = 0;
};
