#include "controls/globals/GlobalPageCommands.h"

#include "controls/globals/GlobalPageTypes.h"
#include "controls/session/ProjectPages.h"
#include "platform/Paths.h"
#include "platform/QvError.h"
#include "startup/PageText.h"
#include "tools/PageSkeleton.h"
#include "tools/html/HtmlScan.h"

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

auto isIt(const GlobalPage &page)
{
    return [id = page.id](const GlobalPage &other) { return other.id == id; };
}

QList<GlobalPage>::iterator found(QList<GlobalPage> &pages, const GlobalPage &page)
{
    const auto at = std::find_if(pages.begin(), pages.end(), isIt(page));
    if (at == pages.end())
        throw QvError(InvalidCall, {},
                      u"The global page \"%1\" is not there any more."_s.arg(page.title));
    return at;
}

/// The files beside or below a page that are part of it, relative to its folder.
QStringList neededBy(const QString &page)
{
    QStringList needed;
    for (const PageReference &reference : scanHtml(page).references) {
        const PageTarget target =
            targetOf(QStringView(page).sliced(reference.start, reference.length));
        if (reference.kind == PageReference::Kind::Link
            || target.place != PageTarget::Place::Relative)
            continue;
        if (const auto relative = joined({}, target.path))
            needed.append(*relative);
    }
    return needed;
}

void makeFolders(FileSystem &files, QString folder, const QString &below)
{
    for (const QString &piece : below.split(u'\\', Qt::SkipEmptyParts)) {
        folder += piece;
        if (!files.folderExists(folder))
            files.makeFolder(folder);
        folder += u'\\';
    }
}

} // namespace

TocBook globalBook()
{
    TocBook book;
    book.name = u"Global Information"_s;
    book.acronym = u"GLOBAL"_s;
    book.folder = ProjectFile::globalFolder;
    book.file = ProjectFile::globalBook;
    return book;
}

GlobalPageCommands::GlobalPageCommands(ProjectSession &session)
    : m_session(session)
    , m_values(session.program().session)
{
}

QString GlobalPageCommands::folder() const
{
    return m_session.folder() + ProjectFile::globalFolder + u'\\';
}

std::optional<QString> GlobalPageCommands::pathOf(const GlobalPage &page) const
{
    return page.file.isEmpty() ? std::nullopt : insideOf(folder(), page.file);
}

QString GlobalPageCommands::problemOfFile(const QString &file)
{
    if (file.isEmpty())
        return tr("Enter the name of the file.");
    if (!isSafeName(file) || file.contains(u'#') || file.contains(u'%'))
        return tr("A file cannot be named \"%1\".").arg(file);
    if (!isPageName(file))
        return tr("The name of a page ends in .htm or .html.");
    if (m_session.program().files.exists(folder() + file))
        return tr("There is a file named \"%1\" already.").arg(file);
    return {};
}

QString GlobalPageCommands::freeFile(const QString &wanted)
{
    const QString ending = u'.' + wanted.section(u'.', -1);
    QString base = wanted.chopped(ending.size());
    if (!base.contains("Book_"_L1))
        base.prepend("Book_"_L1);
    QString file = base + ending;
    for (int number = 2; m_session.program().files.exists(folder() + file); ++number)
        file = base + u"-%1"_s.arg(number) + ending;
    return file;
}

void GlobalPageCommands::require(const GlobalPage &page)
{
    QString problem = GlobalPageTypes::problemOf(page.type, m_session.globalPages(), page.id);
    if (page.title.trimmed().isEmpty())
        problem = tr("Enter the title of the page.");
    if (page.id.isEmpty() && problem.isEmpty())
        problem = problemOfFile(page.file);
    if (!problem.isEmpty())
        throw QvError(InvalidCall, {}, problem);
}

void GlobalPageCommands::create(const GlobalPage &page)
{
    require(page);
    m_session.perform(tr("Add global page %1").arg(page.title), [&](StagedFiles &files) {
        edit(files, [&](Pages &pages) { pages.append(page); });
        files.replaceFile(folder() + page.file, newPage(page.title, m_values.projectLanguage));
    });
}

void GlobalPageCommands::take(const QString &source, const GlobalPage &page)
{
    require(page);
    m_session.perform(tr("Add global page %1").arg(page.title), [&](StagedFiles &files) {
        edit(files, [&](Pages &pages) { pages.append(page); });
        const QByteArray bytes = files.readFile(source);
        files.replaceFile(folder() + page.file, bytes);
        copyNeeded(files, source, bytes);
    });
}

void GlobalPageCommands::copyNeeded(StagedFiles &files, const QString &source,
                                    const QByteArray &bytes)
{
    for (const QString &relative : neededBy(decodePage(bytes, m_values.projectLanguage).text)) {
        const QString from = parentFolder(source) + relative;
        const auto to = insideOf(folder(), relative);
        if (!to || !files.fileExists(from))
            continue;
        const QByteArray needed = files.readFile(from);
        if (files.exists(*to) && files.readFile(*to) != needed)
            throw QvError(PathFileAccess, {},
                          tr("The page needs the file %1, but the project has another file of that "
                             "name among its global pages. Rename one of them first.")
                              .arg(relative));
        makeFolders(files, folder(), parentFolder(relative));
        files.replaceFile(*to, needed);
    }
}

void GlobalPageCommands::change(const GlobalPage &page)
{
    require(page);
    m_session.perform(tr("Change global page %1").arg(page.title), [&](StagedFiles &files) {
        edit(files, [&](Pages &pages) {
            const auto at = found(pages, page);
            at->title = page.title;
            at->type = page.type;
        });
    });
}

void GlobalPageCommands::remove(const GlobalPage &page)
{
    m_session.perform(tr("Delete global page %1").arg(page.title), [&](StagedFiles &files) {
        bool isShared = false; // another entry may name the same file
        edit(files, [&](Pages &pages) {
            pages.erase(found(pages, page));
            isShared = std::any_of(pages.cbegin(), pages.cend(), [&](const GlobalPage &other) {
                return other.file.compare(page.file, Qt::CaseInsensitive) == 0;
            });
        });
        const auto path = pathOf(page);
        if (path && !isShared && files.fileExists(*path))
            files.setAside(*path, m_session.binPlace(lastComponent(*path)));
    });
}

void GlobalPageCommands::moveTo(const GlobalPage &page, int place)
{
    m_session.perform(tr("Move global page %1").arg(page.title), [&](StagedFiles &files) {
        edit(files, [&](Pages &pages) {
            const auto at = found(pages, page) - pages.begin();
            const qsizetype last = pages.size() - 1;
            pages.move(at, place < 0 ? last : qMin<qsizetype>(place, last));
        });
    });
}

void GlobalPageCommands::unlock(const GlobalPage &page)
{
    FileSystem &files = m_session.program().files;
    if (const auto path = pathOf(page))
        files.setAttributes(*path, files.attributes(*path) & ~ReadOnlyFile);
    Q_EMIT m_session.globalPagesChanged();
}

QStringList GlobalPageCommands::usesOf(const GlobalPage &page)
{
    QStringList names;
    const PageIndex &index = m_session.pages().current();
    const QString path = ProjectFile::globalFolder + u"\\"_s + page.file;
    for (const PageUse &use : index.usesOf(path)) {
        if (use.page.compare(path, Qt::CaseInsensitive) != 0 && !names.contains(use.page))
            names.append(use.page);
    }
    return names;
}

void GlobalPageCommands::edit(StagedFiles &files, const std::function<void(Pages &)> &change)
{
    Pages pages = readGlobalPages(m_values, files, m_session.projectName());
    change(pages);
    writeGlobalPages(m_values, files, m_session.projectName(), pages);
}
