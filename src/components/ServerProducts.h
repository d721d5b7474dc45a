#pragma once

#include <QString>
#include <QStringList>

/// The product's server component: which projects there are, and since when.
class ServerProducts
{
public:
    virtual ~ServerProducts() = default;

    /// Names of the catalogued projects in file order, without "My Favorites".
    virtual QStringList GetAvailableProducts() = 0;

    /// The project's date of addition as stored; "" when it has none or is not catalogued.
    QString GetQVSelectionAddDate(const QString &name)
    {
        return GetQVSelectionAddDates({name}).first();
    }
    /// The same for many, in their order, with one look at the catalogue.
    virtual QStringList GetQVSelectionAddDates(const QStringList &names) = 0;
};
