#include "workspace/HelpTopics.h"

#include "startup/ExternalPrograms.h"

#include <QHash>
#include <QWidget>

using namespace Qt::StringLiterals;

namespace {

constexpr auto guide = "QVT@qv@qvdev_ug@qv@"_L1;

/// Titles of the pages of the guide by the object names of the controls they are about.
const QHash<QString, QString> &titles()
{
    static const QHash<QString, QString> known{
        {u"QV_DeveloperTreeOCX1"_s, u"The project tree"_s},
        {u"ctlGlobalsTab1"_s, u"Project properties and global pages"_s},
        {u"ctlBooksTab1"_s, u"Books and pages"_s},
        {u"txtSource"_s, u"Editing a page"_s},
        {u"ctlQuickNav1"_s, u"Quick navigation"_s},
        {u"cmdBuild"_s, u"Building a project"_s},
        {u"frmBuild"_s, u"Building a project"_s},
        {u"cmdPreview"_s, u"Preview"_s},
    };
    return known;
}

} // namespace

QString helpTopicOf(const QWidget *focused)
{
    for (const QWidget *widget = focused; widget != nullptr; widget = widget->parentWidget()) {
        if (const auto title = titles().constFind(widget->objectName());
            title != titles().constEnd())
            return guide + *title;
    }
    return whatToDoTopic;
}

QStringList helpTopics()
{
    QStringList topics{whatToDoTopic};
    for (const QString &title : titles())
        topics.append(guide + title);
    return topics;
}
