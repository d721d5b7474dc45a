#include "dialogs/merge/SharedFiles.h"

#include "dialogs/merge/BookPlaces.h"
#include "dialogs/merge/RenamedLinks.h"
#include "platform/Paths.h"
#include "platform/QvError.h"
#include "projectfiles/ProductFolders.h"
#include "projectfiles/ProjectCopy.h"
#include "projectfiles/TocMerge.h"
#include "startup/ContentFiles.h"
#include "startup/Session.h"
#include "tools/FolderNames.h"

#include <QScopeGuard>

#include <algorithm>

using namespace Qt::StringLiterals;
using Kind = MergeFinding::Kind;

namespace {

/// Files directly in a project's folder that the product makes, logs and packed copies among them.
bool isProductFile(const QString &name)
{
    const bool isXml = name.endsWith(".xml"_L1, Qt::CaseInsensitive);
    return (isXml && name.startsWith("QV_"_L1, Qt::CaseInsensitive))
           || name.endsWith("_Log.txt"_L1, Qt::CaseInsensitive)
           || name.contains("_Server.Zip"_L1, Qt::CaseInsensitive);
}

bool isProducts(const TreeEntry &entry)
{
    if (isWorkFile(entry))
        return true;
    const QString &name = entry.relative;
    if (name.contains(u'\\'))
        return false;
    if (entry.status.kind != FileKind::Folder)
        return isProductFile(name);
    return std::any_of(
        std::begin(productFolders), std::end(productFolders),
        [&](QLatin1StringView own) { return name.compare(own, Qt::CaseInsensitive) == 0; });
}

} // namespace

SharedFiles::SharedFiles(Program &program, const QString &folder, const QStringList &bookFolders,
                         QList<MergeFinding> &findings)
    : m_program(program)
    , m_folder(folder)
    , m_books(foldedBookFolders(bookFolders))
    , m_findings(findings)
{
}

void SharedFiles::bring(const MergeSource &source, const QHash<QString, QString> &renamed,
                        const Progress &progress)
{
    m_project = source.name;
    m_renamed = renamed;
    m_stage = freeStage(source.folder);
    const auto clear = qScopeGuard([this] {
        trap([](const QvError &) {}, // what stopped the work is told
             [this] {
                 if (m_program.files.exists(m_stage))
                     (void)deleteTree(m_program.files, m_stage);
             });
    });
    stage(source, progress);
    settle({}, {}, progress.piece(3, 4, m_project));
}

QString SharedFiles::freeStage(const QString &source) const
{
    FileSystem &files = m_program.files;
    QString name = u"Shared.qvnew"_s;
    while (files.exists(m_folder + name) || files.exists(source + name))
        name.prepend(u'_');
    return m_folder + name + u'\\';
}

/// Makes them the merged project's in a folder of their own: only then can be seen whether they are
/// the same as those that are there.
void SharedFiles::stage(const MergeSource &source, const Progress &progress)
{
    FileSystem &files = m_program.files;
    const QSet<QString> books = foldedBookFolders(bookFoldersOf(source.toc));
    const auto leaveOut = [&](const TreeEntry &entry) {
        return isProducts(entry) || books.contains(entry.relative.toCaseFolded());
    };
    for (const QString &link :
         copyTree(files, source.folder, m_stage, progress.piece(0, 4, m_project), leaveOut))
        note(Kind::NotCopied, u"Links to other places are not copied: "_s + link);

    Session session = m_program.session;
    session.projectLanguage = source.language; // in which its pages are to be read
    for (const QString &page :
         ContentFiles(session, files)
             .QVUpdateFiles(m_stage, m_project, 0, progress.piece(1, 4, m_project)))
        note(Kind::Unreadable, u"Kept beside an empty page: "_s + page);
    if (m_renamed.isEmpty())
        return;
    RenamedLinks links(files, session.projectName, m_renamed, source.language);
    links.rewrite(m_stage, {}, progress.piece(2, 4, m_project));
    for (const QString &remark : links.remarks())
        note(Kind::LinksUnchanged, remark);
}

/// Puts what lies in one folder of the stage in place; `from` and `to` are relative, with backslash
/// or empty.
void SharedFiles::settle(const QString &from, const QString &to, const Progress &progress)
{
    FileSystem &files = m_program.files;
    const FolderNames taken(files.entries(m_folder + to));
    for (const FolderEntry &entry : files.entries(m_stage + from)) {
        progress.step(0, 1, entry.name);
        const TreeEntry staged{m_stage + from + entry.name, from + entry.name, entry.status};
        if (const auto renamed = m_renamed.constFind(staged.relative); renamed != m_renamed.cend())
            settle(staged.relative + u'\\', *renamed + u'\\', progress);
        else if (const FolderEntry *const there = taken.find(entry.name))
            settleTaken(staged, {m_folder + to + there->name, to + there->name, there->status},
                        progress);
        else
            files.move(staged.path, m_folder + to + entry.name, NameCheck::Exact);
    }
}

void SharedFiles::settleTaken(const TreeEntry &staged, const TreeEntry &there,
                              const Progress &progress)
{
    const auto areBoth = [&](FileKind kind) {
        return staged.status.kind == kind && there.status.kind == kind;
    };
    if (areBoth(FileKind::Folder) && !m_books.contains(there.relative.toCaseFolded()))
        settle(staged.relative + u'\\', there.relative + u'\\', progress);
    else if (!areBoth(FileKind::File) || staged.status.size != there.status.size
             || m_program.files.readFile(staged.path) != m_program.files.readFile(there.path))
        note(Kind::NotCopied,
             u"Something else is there already, and pages may show that instead: "_s
                 + there.relative);
}

void SharedFiles::note(Kind kind, QString detail)
{
    m_findings.append({kind, m_project, {}, {}, detail.replace(m_stage, m_folder)});
}
