#include "controls/import/AddImportFiles.h"

#include "controls/import/ImportList.h"
#include "controls/parts/Handler.h"
#include "platform/TreeWalker.h"
#include "tools/import/SourceImport.h"

#include <QWidget>

using namespace Qt::StringLiterals;

AddImportFiles::AddImportFiles(ProjectSession &session, QWidget *window)
    : QObject(window)
    , m_session(session)
    , m_list(new ImportList(session, window))
{
    connect(m_list, &ImportList::added, this, &AddImportFiles::added);
    connect(m_list, &ImportList::closed, this, &AddImportFiles::tidy);
}

AddImportFiles::~AddImportFiles() = default;

QString AddImportFiles::fileFilter()
{
    return u"Files to import(*.txt;*.md;*.markdown;*.csv;*.tsv;*.htm;*.html;*.xhtml;*.zip)|*.txt;"
           "*.md;*.markdown;*.csv;*.tsv;*.htm;*.html;*.xhtml;*.zip"_s;
}

void AddImportFiles::begin(const QStringList &picked)
{
    const QString project = m_session.projectName();
    ImportPlan plan;
    const bool looked =
        look(tr("Looking at the files..."), plan,
             [&, book = m_session.currentBook()](SourceImport &import, const QString &scratch,
                                                 const Progress &progress) {
                 return import.planImport(project, *book, picked, scratch, progress);
             });
    if (looked)
        m_list->decide(plan);
}

void AddImportFiles::beginNewer()
{
    const QString project = m_session.projectName();
    ImportPlan plan;
    const bool looked =
        look(tr("Looking at the sources of the pages..."), plan,
             [&, book = m_session.currentBook()](SourceImport &import, const QString &scratch,
                                                 const Progress &progress) {
                 return import.planNewer(project, *book, scratch, progress);
             });
    if (!looked)
        return;
    if (!plan.items.isEmpty() || !plan.omissions.isEmpty()) {
        m_list->decide(plan);
        return;
    }
    tidy();
    m_session.program().messages.show(
        {tr("No source of the book %1 has changed since it was added.").arg(plan.book.name)});
}

/// Fills the plan on a worker; false when there is no book, or the author stopped it, or it failed.
bool AddImportFiles::look(const QString &title, ImportPlan &plan, const Look &work)
{
    if (!m_session.currentBook())
        return false;
    const bool done = wasDone(m_session.program(), [&] {
        tidy();
        m_scratch = m_session.binPlace(u"Unpacked"_s);
        Program &program = m_session.program();
        m_session.runLong(title, [&](const Progress &progress) {
            SourceImport import(program.session, program.files);
            plan = work(import, m_scratch, progress);
        });
    });
    if (!done)
        tidy();
    return done;
}

// What cannot be deleted now goes with the folder it lies in, when the project is closed.
void AddImportFiles::tidy()
{
    FileSystem &files = m_session.program().files;
    trap([](const QvError &) {},
         [&] {
             if (!m_scratch.isEmpty() && files.folderExists(m_scratch))
                 deleteTree(files, m_scratch);
         });
    m_scratch.clear();
}
