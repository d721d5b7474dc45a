#include "controls/pages/PageStore.h"

#include "platform/FileSystem.h"
#include "platform/Paths.h"
#include "platform/QvError.h"
#include "startup/Session.h"
#include "tools/PageCharset.h"

#include <QCoreApplication>

using namespace Qt::StringLiterals;

namespace {
QString tr(const char *text)
{
    return QCoreApplication::translate("PageStore", text);
}

QString encodingName(const PageEncoding &encoding)
{
    return QString::fromLatin1(encoding.name);
}

// Text that does not come back as the same bytes would be harmed by saving it.
QString reasonAgainstEditing(const PageText &content, const QByteArray &bytes)
{
    const QString reason =
        tr("Some bytes of this page are no text in %1. It is shown, but cannot be edited here.")
            .arg(encodingName(content.encoding));
    if (content.damaged || content.text.contains(QChar::Null)) // UTF-16 without a mark, pictures
        return reason;
    bool faithful = false;
    const auto differs = [](const QvError &) {};
    trap(differs, [&] { faithful = encodePage(content.text, content.encoding) == bytes; });
    return faithful ? QString() : reason;
}
} // namespace

std::optional<PageRef> currentPageOf(ProjectSession &session)
{
    const auto &book = session.currentBook();
    if (!book || session.currentPage().isEmpty())
        return {};
    for (const BookPage &page : flattened(session.book(*book).pages)) {
        if (page.id == session.currentPage())
            return PageRef{*book, page};
    }
    throw QvError(FileNotFound, {}, tr("The book has no such page any more."));
}

PageStore::PageStore(ProjectSession &session)
    : m_session(session)
    , m_values(session.program().session)
    , m_files(session.program().files)
{
}

OpenPage PageStore::read(const PageRef &ref)
{
    OpenPage open;
    place(open, ref);
    open.locked = isLocked(open);
    open.stamp = stampOf(m_files, open.path);
    open.bytes = m_files.readFile(open.path);
    open.content = decodePage(open.bytes, m_values.projectLanguage);
    open.uneditable = reasonAgainstEditing(open.content, open.bytes);
    return open;
}

void PageStore::place(OpenPage &page, const PageRef &ref)
{
    page.project = m_session.projectName();
    page.ref = ref;
    page.path = BookFile(m_values, m_files).pagePath(page.project, ref.book, ref.page.file);
    page.relative = page.path.sliced(m_session.folder().size());
}

void PageStore::follow(OpenPage &page, const PageRef &ref)
{
    place(page, ref);
    page.locked = isLocked(page);
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

QString PageStore::textRead(const OpenPage &page) const
{
    return page.gone ? QString() : decodePage(page.bytes, m_values.projectLanguage).text;
}

QString PageStore::reasonAgainstEncoding(const OpenPage &page, const QString &text) const
{
    QString reason;
    trap([&](const QvError &error) { reason = error.description(); },
         [&] {
             const QByteArray bytes = encodePage(text, page.content.encoding);
             if (decodePage(bytes, m_values.projectLanguage).text != text)
                 reason = tr("Saved in %1, the page would read differently the next time.")
                              .arg(encodingName(page.content.encoding));
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
    const PageText converted = inUtf8(text);
    replace(page, encodePage(converted.text, converted.encoding));
    page.content = converted;
    return converted.text;
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
