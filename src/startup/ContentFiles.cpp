#include "startup/ContentFiles.h"

#include "platform/Paths.h"
#include "platform/TreeWalker.h"
#include "platform/Xml.h"
#include "startup/Errors.h"
#include "startup/PageText.h"

#include <QScopeGuard>

#include <atomic>
#include <future>
#include <optional>
#include <vector>

using namespace Qt::StringLiterals;

namespace {

constexpr int keptAttributes = ReadOnlyFile | HiddenFile | SystemFile | ArchiveFile;
constexpr ReplaceOptions inOwnCopy{false, true};

QString marker(const QString &projectName)
{
    return u"**"_s + projectName + u"**"_s;
}

// Judged below the start folder: what the folders above are called makes no page of a file.
bool isPage(const TreeEntry &entry)
{
    return entry.relative.contains(".htm"_L1, Qt::CaseInsensitive);
}

QList<TreeEntry> filesBelow(FileSystem &files, const QString &folder,
                            const std::function<bool(const TreeEntry &)> &wanted)
{
    QList<TreeEntry> found;
    walkTree(files, folder, [&](const TreeEntry &entry) {
        if (entry.status.kind == FileKind::File && wanted(entry))
            found.append(entry);
    });
    return found;
}

// A name that is not taken and makes no page of what is kept: "a.htm" becomes "a.page-unreadable".
QString keptName(FileSystem &files, const QString &page)
{
    const QString name = lastComponent(page);
    const QString base = parentFolder(page)
                         + name.left(name.indexOf(".htm"_L1, 0, Qt::CaseInsensitive))
                         + u".page-unreadable"_s;
    QString kept = base;
    for (int number = 2; files.exists(kept); ++number)
        kept = base + u'-' + QString::number(number);
    return kept;
}

void setAside(FileSystem &files, const QString &page)
{
    files.move(page, keptName(files, page));
    files.replaceFile(page, utf16Bytes({}), inOwnCopy);
}

void deleteServerZips(FileSystem &files, const QString &folder, const QString &projectName)
{
    const QString packed = u"QV"_s + projectName + u"_Server.Zip"_s;
    for (const FolderEntry &entry : files.entries(folder)) {
        if (entry.status.kind == FileKind::File && entry.name.contains(packed, Qt::CaseInsensitive))
            files.removeFile(withBackslash(folder) + entry.name, true);
    }
}

/// Rewrites one page; false when it cannot be read.
class PageRewriter
{
public:
    PageRewriter(FileSystem &files, const QString &language, const QString &oldName,
                 const QString &newName)
        : m_files(files)
        , m_language(language)
        , m_old(marker(oldName))
        , m_new(marker(newName))
    {
    }

    bool rewrite(const QString &path) const
    {
        const auto bytes = read(path);
        if (!bytes)
            return false;
        PageText page = decodePage(*bytes, m_language);
        if (page.damaged || page.text.contains(QChar::Null))
            return true;
        if (isWritten(page.encoding) && !page.text.contains(m_old))
            return true;
        page.text.replace(m_old, m_new);
        m_files.replaceFile(path, utf16Bytes(page.text), inOwnCopy);
        return true;
    }

private:
    std::optional<QByteArray> read(const QString &path) const
    {
        const auto unreadable = [](const QvError &) {};
        return trap(unreadable, [&] { return std::optional(m_files.readFile(path)); });
    }

    static bool isWritten(const PageEncoding &encoding)
    {
        return encoding.mark && encoding.name == "UTF-16LE";
    }

    FileSystem &m_files;
    QString m_language, m_old, m_new;
};

/// Calls `work` with each index, on this thread from the front and on another from the back: the
/// two seldom meet in one folder, whose lock they would wait for. Reports from this thread. The
/// first error of either ends both.
void onTwoThreads(qsizetype count, const Progress &progress,
                  const std::function<void(qsizetype)> &work)
{
    if (count == 0)
        return;
    std::atomic<qsizetype> taken = 0;
    const auto workOff = [&](qsizetype first, qsizetype step, const Progress &heard) {
        const auto endBoth = qScopeGuard([&] { taken = count; });
        for (qsizetype i = first, turn = taken++; turn < count; i += step, turn = taken++) {
            heard.step(int(turn), int(count));
            work(i);
        }
    };
    auto other = std::async(std::launch::async, workOff, count - 1, -1, Progress{});
    workOff(0, 1, progress);
    other.get();
}

// The shape in which these two report: the reason stands below it.
auto reraiseAsBuildTab(Session &session, const QString &procedure)
{
    return [&session, procedure](const QvError &error) {
        session.errorText = error.text();
        const QString tag = u"QV_DeveloperBuildOCX::ctlBuildTab - "_s + procedure;
        throw QvError(error.number(), tag,
                      u"Error (%1 ):\n%2\n%3"_s.arg(QString::number(error.number()), tag,
                                                    error.description()));
    };
}

void flip(FileSystem &files, const TreeEntry &entry, int flag)
{
    if (entry.status.kind == FileKind::File && !entry.path.contains("Book_"_L1))
        files.setAttributes(entry.path, (files.attributes(entry.path) & keptAttributes) ^ flag);
}

} // namespace

ContentFiles::ContentFiles(Session &session, FileSystem &files)
    : m_session(session)
    , m_files(files)
{
}

QStringList ContentFiles::QVUpdateFiles(const QString &folder, const QString &oldName,
                                        qint16 deleteServerZip, const Progress &progress)
{
    return trap(reraise(m_session, u"QV_Developer-QVDeveloper::QVUpdateFiles()"_s), [&] {
        if (deleteServerZip == 1)
            deleteServerZips(m_files, folder, oldName);

        const PageRewriter rewriter(m_files, m_session.projectLanguage, oldName,
                                    m_session.projectName);
        const QList<TreeEntry> pages = filesBelow(m_files, folder, isPage);
        std::vector<char> unreadable(size_t(pages.size()));
        onTwoThreads(pages.size(), progress, [&](qsizetype i) {
            unreadable[size_t(i)] = !rewriter.rewrite(pages[i].path);
        });

        QStringList kept;
        for (qsizetype i = 0; i < pages.size(); ++i) {
            if (unreadable[size_t(i)]) {
                setAside(m_files, pages[i].path);
                kept.append(pages[i].path);
            }
        }
        return kept;
    });
}

void ContentFiles::SecureContentFiles(const QString &folderPath)
{
    trap(reraiseAsBuildTab(m_session, u"SecureContentFiles"_s), [&] {
        walkTree(m_files, folderPath, [&](const TreeEntry &entry) {
            if (entry.relative.contains(u'\\'))
                flip(m_files, entry, ReadOnlyFile);
        });
    });
}

void ContentFiles::SetAttribute(const QString &folder, qint16 flag)
{
    trap(reraiseAsBuildTab(m_session, u"SetAttribute"_s), [&] {
        walkTree(m_files, folder, [&](const TreeEntry &entry) {
            flip(m_files, entry, entry.relative.contains(u'\\') ? int(ReadOnlyFile) : flag);
        });
    });
}
