#include "projectfiles/ProjectCopy.h"

#include "platform/Paths.h"
#include "platform/QvError.h"
#include "platform/Xml.h"
#include "projectfiles/FileElements.h"
#include "startup/Errors.h"

#include <QRegularExpression>

using namespace Qt::StringLiterals;

namespace {

// All files written here are our own fresh copies in a folder that nothing refers to yet.
constexpr ReplaceOptions inFreshFolder{.sync = false, .throughReadOnly = true};

/// Earlier versions and work files belong to the project they lie in.
bool staysBehind(const TreeEntry &entry)
{
    if (entry.status.kind == FileKind::File)
        return isWorkFile(entry);
    return entry.relative.compare(ProjectFile::backupFolder, Qt::CaseInsensitive) == 0;
}

void setWherePresent(const pugi::xml_node &header, const char *element, const QString &value)
{
    if (const pugi::xml_node node = header.child(element))
        setText(node, value);
}

} // namespace

// An author's own files are copied, whatever their names end in.
bool isWorkFile(const TreeEntry &entry)
{
    static const QRegularExpression ours(u"\\.(xml\\.lock|qvtmp[0-9]+)$"_s,
                                         QRegularExpression::CaseInsensitiveOption);
    return entry.status.kind == FileKind::File && ours.match(entry.relative).hasMatch();
}

ProjectCopy::ProjectCopy(Session &session, FileSystem &files, Clock &clock, SystemLocale &locale,
                         const QString &folder)
    : m_session(session)
    , m_files(files)
    , m_clock(clock)
    , m_locale(locale)
    , m_folder(folder)
{
}

CopyRemarks ProjectCopy::CopyProjectFolder(const QString &sourceName, const Progress &progress,
                                           const std::function<bool(const TreeEntry &)> &leaveOut)
{
    const auto onError = reraise(m_session, u"QV_Developer::CopyProjectFolder"_s);
    const QString source = trap(onError, [&] {
        const QString there = existingProjectFolder(m_files, m_session.serverPath, sourceName);
        (void)loadXml(m_files, there + ProjectFile::toc, "QV_Master"); // before all is copied
        return there;
    });
    CopyRemarks remarks;
    remarks.links = copyFolder(source, progress, leaveOut);
    remarks.unreadable = trap(onError, [&] { return makeItsOwn(); });
    return remarks;
}

QStringList ProjectCopy::copyFolder(const QString &source, const Progress &progress,
                                    const std::function<bool(const TreeEntry &)> &leaveOut)
{
    const auto isLeftOut = [&](const TreeEntry &entry) {
        return staysBehind(entry) || (leaveOut && leaveOut(entry));
    };
    const QString target = withoutBackslash(folder());
    try {
        if (!m_files.folderExists(target))
            m_files.makeFolder(target);
        return copyTree(m_files, withoutBackslash(source), target, progress, isLeftOut);
    } catch (const Unwinding &) {
        throw;
    } catch (...) {
        throw CopyFailure{.targetFolder = target, .reason = currentError().description()};
    }
}

QStringList ProjectCopy::makeItsOwn()
{
    const QString path = folder() + ProjectFile::toc;
    pugi::xml_document toc = loadXml(m_files, path, "QV_Master");
    const pugi::xml_node header = toc.document_element().child("QV");
    const QString today = m_locale.shortDate(m_clock.now().date());
    setWherePresent(header, "QV_Platform", m_session.projectName);
    setWherePresent(header, "QV_Date_Process", today);
    setWherePresent(header, "QV_Date_Migration", today);
    setWherePresent(header, "QV_Variation", {});
    setWherePresent(header, "QV_ID", {});
    QStringList unreadable = UpdateQVTocInfo(toc);
    saveXml(m_files, path, toc, inFreshFolder);
    unreadable += UpdateProductInfoInBook(ProjectFile::globalFolder, ProjectFile::globalBook);
    unreadable.removeDuplicates(); // the global book may be listed as well
    return unreadable;
}

QStringList ProjectCopy::UpdateQVTocInfo(pugi::xml_document &toc)
{
    QStringList unreadable;
    for (const pugi::xpath_node &entry : toc.select_nodes("//Book")) {
        const pugi::xml_node book = entry.node();
        setChild(book, "Book_Key", m_session.projectName);
        unreadable += UpdateProductInfoInBook(textOf(book.child("Book_Folder")),
                                              textOf(book.child("Book_File")));
    }
    return unreadable;
}

QStringList ProjectCopy::UpdateProductInfoInBook(const QString &bookFolder, const QString &bookFile,
                                                 const QString &acronym)
{
    QString path;
    pugi::xml_document document;
    try {
        path = insideOf(folder(), bookFolder + u'\\' + bookFile).value_or(QString());
        if (path.isEmpty() || !m_files.fileExists(path))
            return {};
        document = loadXml(m_files, path, "Book_Master");
        requiredChild(document.document_element(), "Book", path);
    } catch (const QvError &error) {
        return {error.description()};
    }
    const pugi::xml_node header = document.document_element().child("Book");
    setChild(header, "Book_Key", m_session.projectName);
    setChild(header, "Book_Path",
             u"Docs\\"_s + m_session.projectName + u'\\' + withBackslash(bookFolder));
    if (!acronym.isEmpty())
        setChild(header, "Book_Acro", acronym);
    saveXml(m_files, path, document, inFreshFolder);
    return {};
}

QString ProjectCopy::folder() const
{
    return m_folder.isEmpty() ? projectFolder(m_session.serverPath, m_session.projectName)
                              : m_folder;
}
