#include "catalogue/ProjectCatalogue.h"

#include <QHash>

namespace {

class CatalogueProducts final : public ServerProducts
{
public:
    CatalogueProducts(Session &session, FileSystem &files)
        : m_catalogue(session, files)
    {
    }

    QStringList GetAvailableProducts() override
    {
        QStringList names = m_catalogue.GetProdQVSelection_All();
        names.removeAll(QString());
        return names;
    }

    QStringList GetQVSelectionAddDates(const QStringList &names) override
    {
        QHash<QString, QString> dates;
        for (const CatalogueEntry &entry : m_catalogue.entries()) {
            if (!dates.contains(entry.name))
                dates.insert(entry.name, entry.addDate);
        }
        QStringList found;
        for (const QString &name : names)
            found.append(dates.value(name));
        return found;
    }

private:
    ProjectCatalogue m_catalogue;
};

} // namespace

std::unique_ptr<ServerProducts> makeServerProducts(Session &session, FileSystem &files)
{
    return std::make_unique<CatalogueProducts>(session, files);
}
