#include "startup/HelpTopics.h"

#include "startup/ExternalPrograms.h"

#include <QHash>
#include <QWidget>

using namespace Qt::StringLiterals;

namespace {

constexpr auto guide = "QVT@qv@qvdev_ug@qv@"_L1;

/// Titles of the pages of the guide by the object or class names of what they are about.
const QHash<QString, QString> &titles()
{
    static const QHash<QString, QString> known{
        {u"frmSelPrjTypetoAdd"_s, u"New project"_s},
        {u"MigrationReportDialog"_s, u"Migrate a legacy book set"_s},
        {u"frmContinueDeleteProject"_s, u"Continue or delete a project"_s},
        {u"ReopenDialog"_s, u"Pack and release"_s},
        {u"frmMergeProjects"_s, u"Merge projects"_s},
        {u"MergeFindingsDialog"_s, u"Merge projects"_s},
        {u"frmRankBookSet"_s, u"Rank book sets"_s},
        {u"frmIBLReport"_s, u"Link report"_s},
        {u"frmIndexManager"_s, u"Index manager"_s},

        {u"mnuBar"_s, u"The main window"_s},
        {u"QV_DeveloperTreeOCX1"_s, u"The project tree"_s},
        {u"ctlGlobalsTab1"_s, u"Project properties and global pages"_s},
        {u"CategoriesPage"_s, u"Categories"_s},
        {u"CategoryDialog"_s, u"Categories"_s},
        {u"ReplaceCategoryDialog"_s, u"Categories"_s},
        {u"CategoryList"_s, u"Categories"_s},
        {u"ctlBooksTab1"_s, u"Books and pages"_s},
        {u"NewPageDialog"_s, u"Books and pages"_s},
        {u"BookChoiceDialog"_s, u"Books and pages"_s},
        {u"DeletePagesDialog"_s, u"Books and pages"_s},
        {u"AddSourceFilesDialog"_s, u"Add and import files"_s},
        {u"PageEditor"_s, u"Editing a page"_s},
        {u"FindInPages"_s, u"Editing a page"_s},
        {u"CompareDialog"_s, u"Recovery"_s},
        {u"KeptTextsDialog"_s, u"Recovery"_s},
        {u"LinksPane"_s, u"Links"_s},
        {u"LinkChangesDialog"_s, u"Links"_s},
        {u"InsertLinkDialog"_s, u"Links"_s},
        {u"KeyWordsPane"_s, u"Search keywords"_s},
        {u"ctlQuickNav1"_s, u"Quick navigation"_s},
        {u"ShortcutList"_s, u"Keyboard shortcuts"_s},
        {u"cmdPreview"_s, u"Preview"_s},

        {u"cmdBuild"_s, u"Building a project"_s},
        {u"frmBuild"_s, u"Building a project"_s},
        {u"FindingsView"_s, u"Quality checks"_s},
        {u"SearchPane"_s, u"Searching"_s},
        {u"PackPane"_s, u"Pack and release"_s},
    };
    return known;
}

QString titleAbout(const QWidget *widget)
{
    const QString title = titles().value(widget->objectName());
    return title.isEmpty() ? titles().value(QString::fromLatin1(widget->metaObject()->className()))
                           : title;
}

} // namespace

QString helpTopicOf(const QWidget *focused)
{
    for (const QWidget *widget = focused; widget != nullptr; widget = widget->parentWidget()) {
        if (const QString title = titleAbout(widget); !title.isEmpty())
            return guide + title;
    }
    return whatToDoTopic;
}

QStringList helpTopics()
{
    QStringList topics{whatToDoTopic};
    for (const QString &title : titles())
        topics.append(guide + title);
    topics.removeDuplicates();
    return topics;
}
