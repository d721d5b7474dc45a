#include "controls/ctlGlobalsTab.h"

#include "catalogue/ProjectCatalogue.h"
#include "controls/globals/CategoryNames.h"
#include "controls/pages/PagePreview.h"
#include "controls/session/ProjectSession.h"
#include "platform/FileSystem.h"
#include "platform/Paths.h"
#include "platform/QvError.h"
#include "resources/Icons.h"
#include "startup/PageText.h"
#include "startup/Session.h"

#include <QFormLayout>
#include <QHeaderView>
#include <QLabel>
#include <QSplitter>
#include <QTabWidget>
#include <QTreeWidget>
#include <QVBoxLayout>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {
constexpr int pathRole = Qt::UserRole;

QLabel *problemLabel(const QString &objectName, QWidget *parent)
{
    auto *label = new QLabel(parent);
    label->setObjectName(objectName);
    label->setTextFormat(Qt::PlainText);
    label->setWordWrap(true);
    return label;
}

QTreeWidget *table(const QString &objectName, const QString &accessibleName,
                   const QStringList &columns, int stretched, QWidget *parent)
{
    auto *tree = new QTreeWidget(parent);
    tree->setObjectName(objectName);
    tree->setAccessibleName(accessibleName);
    tree->setHeaderLabels(columns);
    tree->setRootIsDecorated(false);
    tree->setUniformRowHeights(true);
    tree->header()->setStretchLastSection(false);
    tree->header()->setSectionResizeMode(stretched, QHeaderView::Stretch);
    return tree;
}

int booksWith(const QList<TocBook> &books, const QString &category)
{
    return static_cast<int>(std::count_if(books.cbegin(), books.cend(), [&](const TocBook &book) {
        return book.categories.contains(category, Qt::CaseInsensitive);
    }));
}
} // namespace

ctlGlobalsTab::ctlGlobalsTab(ProjectSession &session, QWidget *parent)
    : QWidget(parent)
    , m_session(session)
    , tabGlobals(new QTabWidget(this))
{
    tabGlobals->setObjectName(u"tabGlobals"_s);
    tabGlobals->setDocumentMode(true);
    tabGlobals->addTab(projectPage(), tr("Project"));
    tabGlobals->addTab(globalPages(), tr("Global pages"));
    tabGlobals->addTab(categories(), tr("Categories"));
    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins({});
    layout->addWidget(tabGlobals);

    connect(&m_session, &ProjectSession::wasReset, this, &ctlGlobalsTab::showProject);
    connect(&m_session, &ProjectSession::booksChanged, this, &ctlGlobalsTab::showProject);
    connect(tvwGlobalPages, &QTreeWidget::currentItemChanged, this, &ctlGlobalsTab::showChosenPage);
    showProject();
}

QWidget *ctlGlobalsTab::projectPage()
{
    auto *page = new QWidget(this);
    auto *form = new QFormLayout(page);
    m_name = addFact(form, tr("Name:"), u"lblName"_s);
    m_id = addFact(form, tr("ID:"), u"lblId"_s);
    m_language = addFact(form, tr("Language:"), u"lblLanguage"_s);
    m_platform = addFact(form, tr("Platform:"), u"lblPlatform"_s);
    m_variation = addFact(form, tr("Variation:"), u"lblVariation"_s);
    m_processed = addFact(form, tr("Last processed:"), u"lblProcessed"_s);
    m_migrated = addFact(form, tr("Copied or migrated:"), u"lblMigrated"_s);
    m_books = addFact(form, tr("Books:"), u"lblBooks"_s);
    m_folder = addFact(form, tr("Folder:"), u"lblFolder"_s);
    m_factsProblem = problemLabel(u"lblFactsProblem"_s, page);
    form->addRow(m_factsProblem);
    return page;
}

QLabel *ctlGlobalsTab::addFact(QFormLayout *form, const QString &caption, const QString &objectName)
{
    auto *fact = new QLabel(this);
    fact->setObjectName(objectName);
    fact->setTextFormat(Qt::PlainText);
    fact->setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
    fact->setWordWrap(true);
    form->addRow(caption, fact);
    fact->setAccessibleName(caption.chopped(1));
    return fact;
}

QWidget *ctlGlobalsTab::globalPages()
{
    tvwGlobalPages = table(u"tvwGlobalPages"_s, tr("Global pages"),
                           {tr("Page"), tr("Type"), tr("File"), tr("Problem")}, 0, this);
    m_pagesProblem = problemLabel(u"lblPagesProblem"_s, this);
    const Program &program = m_session.program();
    m_preview = new PagePreview(program.files, program.session.projectLanguage, this);
    m_preview->setObjectName(u"globalPreview"_s);
    m_preview->setAccessibleName(tr("Preview of the global page"));

    auto *upper = new QWidget(this);
    auto *layout = new QVBoxLayout(upper);
    layout->setContentsMargins({});
    layout->addWidget(m_pagesProblem);
    layout->addWidget(tvwGlobalPages);
    auto *both = new QSplitter(Qt::Vertical, this);
    both->setObjectName(u"splGlobalPages"_s);
    both->addWidget(upper);
    both->addWidget(m_preview);
    both->setStretchFactor(0, 2);
    both->setStretchFactor(1, 3);
    both->setChildrenCollapsible(false);
    return both;
}

QWidget *ctlGlobalsTab::categories()
{
    auto *page = new QWidget(this);
    tvwCategories = table(u"tvwCategories"_s, tr("Categories"),
                          {tr("Category"), tr("Origin"), tr("Books")}, 0, page);
    m_categoriesProblem = problemLabel(u"lblCategoriesProblem"_s, page);
    auto *layout = new QVBoxLayout(page);
    layout->setContentsMargins({});
    layout->addWidget(m_categoriesProblem);
    layout->addWidget(tvwCategories);
    return page;
}

QString ctlGlobalsTab::ProjectName() const
{
    return m_session.projectName();
}

void ctlGlobalsTab::setProjectName(const QString &name)
{
    m_session.open(name);
}

void ctlGlobalsTab::setGlobalPageName(const QString &page)
{
    const QList<QTreeWidgetItem *> found = tvwGlobalPages->findItems(page, Qt::MatchExactly, 0);
    if (page.isEmpty() || found.isEmpty()) {
        tabGlobals->setCurrentIndex(0);
        return;
    }
    tabGlobals->setCurrentIndex(1);
    tvwGlobalPages->setCurrentItem(found.first());
}

void ctlGlobalsTab::showProject()
{
    const bool isOpen = !m_session.projectName().isEmpty();
    setEnabled(isOpen);
    const auto shown = [&](QLabel *label, void (ctlGlobalsTab::*part)()) {
        QString problem;
        trap([&](const QvError &error) { problem = error.description(); },
             [&] { (this->*part)(); });
        say(label, problem);
    };
    shown(m_factsProblem, &ctlGlobalsTab::showFacts);
    shown(m_pagesProblem, &ctlGlobalsTab::showGlobalPages);
    shown(m_categoriesProblem, &ctlGlobalsTab::showCategories);
}

void ctlGlobalsTab::say(QLabel *label, const QString &problem)
{
    label->setText(problem.isEmpty() ? QString() : u"\u26A0 "_s + problem);
    label->setVisible(!problem.isEmpty());
}

void ctlGlobalsTab::showFacts()
{
    const TocHeader &header = m_session.header();
    m_name->setText(m_session.projectName());
    m_platform->setText(header.platform);
    m_variation->setText(header.variation);
    m_processed->setText(header.dateProcess);
    m_migrated->setText(header.dateMigration);
    m_books->setText(QString::number(m_session.books().size()));
    FileSystem &files = m_session.program().files;
    m_folder->setText(m_session.projectName().isEmpty() ? QString()
                                                        : m_session.shownPath(m_session.folder()));
    m_id->clear();
    m_language->clear();
    for (const CatalogueEntry &entry :
         ProjectCatalogue(m_session.program().session, files).entries()) {
        if (entry.name.compare(m_session.projectName(), Qt::CaseInsensitive) == 0) {
            m_id->setText(entry.id);
            m_language->setText(entry.language);
        }
    }
}

void ctlGlobalsTab::showGlobalPages()
{
    const QTreeWidgetItem *current = tvwGlobalPages->currentItem();
    const QString chosen = current != nullptr ? current->data(0, pathRole).toString() : QString();
    tvwGlobalPages->clear();
    if (m_session.projectName().isEmpty())
        return;
    FileSystem &files = m_session.program().files;
    const QString folder = m_session.folder() + ProjectFile::globalFolder + u'\\';
    for (const GlobalPage &page : m_session.globalPages()) {
        const auto path = insideOf(folder, page.file);
        const QString problem = !path                     ? tr("outside the project")
                                : files.fileExists(*path) ? QString()
                                                          : tr("file missing");
        auto *item =
            new QTreeWidgetItem(tvwGlobalPages, {page.title.isEmpty() ? page.file : page.title,
                                                 page.type, page.file, problem});
        item->setIcon(0, icon(problem.isEmpty() ? "page"_L1 : "page-missing"_L1));
        item->setData(0, pathRole, problem.isEmpty() ? *path : QString());
        if (!chosen.isEmpty() && path == chosen)
            tvwGlobalPages->setCurrentItem(item);
    }
}

void ctlGlobalsTab::showChosenPage()
{
    const QTreeWidgetItem *item = tvwGlobalPages->currentItem();
    const QString path = item != nullptr ? item->data(0, pathRole).toString() : QString();
    if (path.isEmpty()) {
        m_preview->showNothing();
        return;
    }
    const auto showProblem = [this](const QvError &error) {
        m_preview->showNothing();
        say(m_pagesProblem, error.description());
    };
    trap(showProblem, [&] {
        const Program &program = m_session.program();
        const PageText page =
            decodePage(program.files.readFile(path), program.session.projectLanguage);
        const QString folder = m_session.folder();
        m_preview->showPage(page.text, folder, path.sliced(folder.size()));
        say(m_pagesProblem, {});
    });
}

void ctlGlobalsTab::showCategories()
{
    tvwCategories->clear();
    if (m_session.projectName().isEmpty())
        return;
    for (const Category &category : ownCategories(m_session))
        addCategory(category.name, tr("Project"));
    for (const Category &category : defaultCategories(m_session))
        addCategory(category.name, tr("Default"));
    for (const QString &name : m_session.quickNav().categories)
        tvwCategories->addTopLevelItem(
            new QTreeWidgetItem({name, tr("Quick navigation"), QString()}));
}

void ctlGlobalsTab::addCategory(const QString &name, const QString &origin)
{
    auto *item = new QTreeWidgetItem(
        tvwCategories, {name, origin, QString::number(booksWith(m_session.books(), name))});
    item->setTextAlignment(2, Qt::AlignTrailing | Qt::AlignVCenter);
}
