#pragma once

#include <QList>
#include <QString>

/// The machine's form of paths in texts for people: the program's own texts name files in the
/// product's form, which no shell takes.
class ShownPaths final
{
public:
    /// Paths below `product` are to be shown below `native`.
    void add(const QString &product, const QString &native);
    [[nodiscard]] QString in(QString text) const;

private:
    struct Place
    {
        QString product, native;
    };
    QList<Place> m_places;
};
