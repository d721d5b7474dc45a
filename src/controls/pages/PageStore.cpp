#include "controls/pages/PageStore.h"

#include "platform/FileSystem.h"
#include "platform/Paths.h"
#include "platform/QvError.h"
#include "startup/FileHelpers.h"
#include "startup/Session.h"

#include <QRegularExpression>

using namespace Qt::StringLiterals;

namespace {
const PageEncoding utf8{"UTF-8", false};

QString encodingName(const PageEncoding &encoding)
{
    return QString::fromLatin1(encoding.name);
}

// Text that does not come back as the same bytes would be harmed by saving it.
QString reasonAgainstEditing(const PageText &content, const QByteArray &bytes)
{
    const QString reason =
        u"Some bytes of this page are no text in %1. It is shown, but cannot be edited here."_s.arg(
            encodingName(content.encoding));
    if (content.damaged || content.text.contains(QChar::Null)) // UTF-16 without a mark, pictures
        return reason;
    bool faithful = false;
    const auto differs = [](const QvError &) {};
    trap(differs, [&] { faithful = encodePage(content.text, content.encoding) == bytes; });
    return faithful ? QString() : reason;
}

/// Changes the charset that a page declares; true when it declares one.
bool declareUtf8(QString &text)
{
    static const QRegularExpression meta(u"(<meta[^>]*\\bcharset\\s*=\\s*[\"']?)([^\\s\"'>;/]+)"_s,
                                         QRegularExpression::CaseInsensitiveOption);
    static const QRegularExpression xml(u"^(\\s*<\\?xml[^>]*\\bencoding\\s*=\\s*[\"'])([^\"']+)"_s);
    bool declared = false;
    for (const QRegularExpression &expression : {meta, xml}) {
        const QRegularExpressionMatch match = expression.match(text);
        if (!match.hasMatch())
            continue;
        text.replace(match.capturedStart(2), match.capturedLength(2), u"utf-8"_s);
        declared = true;
    }
    return declared;
}
} // namespace

PageStore::PageStore(ProjectSession &session)
    : m_session(session)
    , m_values(session.program().session)
    , m_files(session.program().files)
{
}

OpenPage PageStore::read(const TocBook &book, const BookPage &page)
{
    OpenPage open{m_session.projectName(), book, page, {}, {}, {}, false, false, {}};
    open.path = BookFile(m_values, m_files).pagePath(m_session.projectName(), book, page.file);
    open.locked = isLocked(open);
    open.bytes = m_files.readFile(open.path);
    open.content = decodePage(open.bytes, m_values.projectLanguage);
    open.uneditable = reasonAgainstEditing(open.content, open.bytes);
    return open;
}

bool PageStore::changedOnDisk(const OpenPage &page)
{
    const bool isThere = m_files.fileExists(page.path);
    return isThere == page.gone || (isThere && m_files.readFile(page.path) != page.bytes);
}

void PageStore::acceptDisk(OpenPage &page)
{
    page.gone = !m_files.fileExists(page.path);
    page.bytes = page.gone ? QByteArray() : m_files.readFile(page.path);
}

QString PageStore::reasonAgainstEncoding(const OpenPage &page, const QString &text) const
{
    QString reason;
    trap([&](const QvError &error) { reason = error.description(); },
         [&] {
             const QByteArray bytes = encodePage(text, page.content.encoding);
             if (decodePage(bytes, m_values.projectLanguage).text != text)
                 reason = u"Saved in %1, the page would read differently the next time."_s.arg(
                     encodingName(page.content.encoding));
         });
    return reason;
}

void PageStore::write(OpenPage &page, const QString &text)
{
    replace(page, encodePage(text, page.content.encoding));
    page.content.text = text;
}

QString PageStore::writeAsUtf8(OpenPage &page, const QString &text)
{
    QString declared = text;
    PageEncoding encoding = utf8;
    encoding.mark = !declareUtf8(declared);
    replace(page, encodePage(declared, encoding));
    page.content = {declared, encoding, false};
    return declared;
}

void PageStore::replace(OpenPage &page, const QByteArray &bytes)
{
    m_files.replaceFile(page.path, bytes);
    page.bytes = bytes;
    page.gone = false;
}

bool PageStore::isLocked(const OpenPage &page)
{
    return m_files.status(page.path).readOnly;
}

void PageStore::unlock(OpenPage &page)
{
    m_files.setAttributes(page.path, m_files.attributes(page.path) & ~ReadOnlyFile);
    page.locked = false;
}

void PageStore::keepForRecovery(const OpenPage &page, const QString &text)
{
    const QString path = recoveryPath(page);
    FileHelpers(m_values, m_files).mbCreateFilePath(withoutBackslash(parentFolder(path)));
    m_files.replaceFile(path, encodePage(text, utf8));
}

std::optional<QString> PageStore::recovered(const OpenPage &page)
{
    const QString path = recoveryPath(page);
    if (!m_files.fileExists(path))
        return {};
    return QString::fromUtf8(m_files.readFile(path));
}

void PageStore::forgetRecovered(const OpenPage &page)
{
    if (const QString path = recoveryPath(page); m_files.fileExists(path))
        m_files.removeFile(path);
}

QString PageStore::recoveryPath(const OpenPage &page) const
{
    const QString project = projectFolder(m_values.serverPath, page.project);
    return project + ProjectFile::backupFolder + u"\\Recovered\\"_s
           + page.path.sliced(project.size());
}
