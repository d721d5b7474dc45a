#include "tools/context/ContextSettings.h"

#include "platform/Paths.h"
#include "platform/Xml.h"
#include "resources/Counted.h"
#include "tools/build/FreshFolder.h"

#include <QCoreApplication>
#include <QHash>
#include <QMap>

#include <algorithm>
#include <optional>

using namespace Qt::StringLiterals;

namespace {

constexpr auto folderName = "DynamicHelp"_L1;

QString tr(const char *text)
{
    return QCoreApplication::translate("ContextSettings", text);
}

/// One usable line of the map.
struct Context
{
    QString name;
    qint64 number = 0;
    QString book, page, file; ///< acronym, id, and where it lies in the project
};

struct ContextMap
{
    QMap<qint64, Context> byNumber;
    QHash<QString, QString> names; ///< names taken, with the page that has them
    QList<Finding> findings;
    int ids = 0;
};

bool isSymbol(const QString &name)
{
    const auto isLetter = [](QChar c) {
        return (c >= u'a' && c <= u'z') || (c >= u'A' && c <= u'Z') || c == u'_';
    };
    const auto isDigit = [](QChar c) { return c >= u'0' && c <= u'9'; };
    return !name.isEmpty() && isLetter(name[0])
           && std::all_of(name.begin(), name.end(),
                          [&](QChar c) { return isLetter(c) || isDigit(c); });
}

/// Programs ask with 32 bits; nothing for what they cannot ask with.
std::optional<qint64> numberOf(const ContextId &id)
{
    bool isNumber = false;
    const uint number = id.number.trimmed().toUInt(&isNumber);
    return isNumber && number > 0 ? std::optional<qint64>(number) : std::nullopt;
}

/// What is wrong with an id: code and text; "" when it can be used.
std::pair<QString, QString> problemOf(const ContextId &id, const ContextMap &map, bool isPageThere)
{
    if (id.name.isEmpty())
        return {u"CTX01"_s, tr("The context number %1 has no name.").arg(id.number)};
    if (!isSymbol(id.name))
        return {u"CTX01"_s, tr("The context id %1 is no name that programs can use. Use letters, "
                               "digits and _ only, beginning with a letter.")
                                .arg(id.name)};
    const auto number = numberOf(id);
    if (!number)
        return {u"CTX02"_s,
                tr("The context id %1 has no number from 1 to 4294967295.").arg(id.name)};
    if (const QString other = map.names.value(id.name); !other.isNull())
        return {u"CTX03"_s, tr("The context id %1 stands at %2 already.").arg(id.name, other)};
    if (const auto other = map.byNumber.constFind(*number); other != map.byNumber.cend())
        return {u"CTX04"_s, tr("The number %1 of %2 belongs to %3 already.")
                                .arg(QString::number(*number), id.name, other->name)};
    if (!isPageThere)
        return {u"CTX05"_s,
                tr("The context id %1 leads to a page that is not there.").arg(id.name)};
    return {};
}

void takePage(ContextMap &map, const BuildBook &book, const BookPage &page,
              const ScannedPages &pages)
{
    const QString spelled =
        pages.listing().spelled(insideOf(book.folder, page.file).value_or(u""_s));
    const QString file = spelled.isEmpty() ? book.folder + page.file : spelled;
    for (const ContextId &id : page.contextIds) {
        ++map.ids;
        const auto [code, text] = problemOf(id, map, !spelled.isEmpty());
        if (!code.isEmpty()) {
            map.findings.append({code, Severity::Error, file, 0, text, id.name});
            continue;
        }
        const qint64 number = *numberOf(id);
        map.names.insert(id.name, file);
        map.byNumber.insert(number, {id.name, number, book.entry.acronym, page.id, file});
    }
}

void findGaps(ContextMap &map)
{
    qint64 last = 0;
    for (const Context &context : std::as_const(map.byNumber)) {
        if (last > 0 && context.number > last + 1)
            map.findings.append(
                {u"CTX06"_s, Severity::Note, context.file, 0,
                 tr("Between %1 and %2 no context number is used.").arg(last).arg(context.number),
                 context.name});
        last = context.number;
    }
}

QByteArray bookFile(const BuildInput &input, const ContextMap &map)
{
    pugi::xml_document document;
    pugi::xml_node master = document.append_child("Book_Master");
    const pugi::xml_node header = master.append_child("Book");
    appendText(header, "Book_Name", u"Dynamic Help"_s);
    appendText(header, "Book_Acro", u"DYNAMICHELP"_s);
    appendText(header, "Book_Key", input.project);
    appendText(header, "Book_Path", u"Docs\\"_s + input.project + u'\\' + folderName + u'\\');
    appendText(header, "Book_Language", input.language);
    pugi::xml_node list = master.append_child("Context_Map");
    for (const Context &context : map.byNumber) {
        pugi::xml_node entry = list.append_child("Context");
        setAttribute(entry, "ID", context.name);
        setAttribute(entry, "Number", QString::number(context.number));
        appendText(entry, "Context_Book", context.book);
        appendText(entry, "Context_Page", context.page);
        appendText(entry, "Context_Target", context.file);
    }
    return xmlBytes(document);
}

QByteArray headerFile(const BuildInput &input, const ContextMap &map)
{
    QString text = u"/* Context ids of %1 */\r\n#ifndef QV_CONTEXT_MAP_H\r\n"
                   "#define QV_CONTEXT_MAP_H\r\n\r\n"_s.arg(input.project);
    for (const Context &context : map.byNumber)
        text += u"#define %1 %2\r\n"_s.arg(context.name, QString::number(context.number));
    return (text + u"\r\n#endif\r\n"_s).toUtf8();
}

QString quoted(QString value)
{
    return u'"' + value.replace(u'"', u"\"\""_s) + u'"';
}

QByteArray tableFile(const ContextMap &map)
{
    QString text = QChar(0xFEFF) + u"ID,Number,Book,Page,Target\r\n"_s; // the mark: for Excel
    for (const Context &context : map.byNumber)
        text += QStringList{context.name, QString::number(context.number), quoted(context.book),
                            context.page, quoted(context.file)}
                    .join(u',')
                + u"\r\n"_s;
    return text.toUtf8();
}

ToolReport reportOf(ContextMap map)
{
    const bool hasErrors =
        std::any_of(map.findings.cbegin(), map.findings.cend(),
                    [](const Finding &finding) { return finding.severity != Severity::Note; });
    return {hasErrors ? ToolReport::Outcome::Warnings : ToolReport::Outcome::Good,
            tr("%1, %2 of them usable.")
                .arg(counted(map.ids, tr("1 context id"), tr("%1 context ids")))
                .arg(map.byNumber.size()),
            std::move(map.findings)};
}

} // namespace

ToolReport writeContextSettings(FileSystem &files, const BuildInput &input,
                                const ScannedPages &pages, const Progress &progress)
{
    ContextMap map;
    map.findings = input.bookProblems(); // their ids are missing in the map
    for (qsizetype number = 0; number < input.books.size(); ++number) {
        const BuildBook &book = input.books[number];
        progress.step(int(number), int(input.books.size()), book.entry.name);
        for (const BookPage &page : flattened(book.book.pages))
            takePage(map, book, page, pages);
    }
    findGaps(map);
    const ToolReport report = reportOf(map);

    FreshFolder folder(files, input, folderName);
    folder.write(u"ContextMap.h"_s, headerFile(input, map));
    folder.write(u"ContextMap.csv"_s, tableFile(map));
    folder.write(u"ContextSettings_Log.txt"_s, logFile(tr("Context settings"), report));
    folder.write(u"Book_DynamicHelp.xml"_s, bookFile(input, map));
    folder.keepOthers();
    folder.putInPlace();
    return report;
}
