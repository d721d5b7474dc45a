#pragma once

#include "reports/LinkOrder.h"

#include <QByteArray>

#include <functional>
#include <optional>

/// What a report tells: these links in this order.
struct ListedLinks
{
    const LinkEntries &links;
    const LinkOrder &rows;
};

/// What stands above the list in a report that is read in a browser.
struct ReportHead
{
    QString title;
    QString generated; ///< when the links were listed
    QString counts;
};

/// "S:\Docs\A b.htm#top" as a report writes it: "file:///S:/Docs/A%20b.htm#top". Slashes and blanks
/// are all that changes; an address that begins with "\" has its slash already.
QString reportLink(const QString &address);

/// The page that an address leads to.
struct LinkedPage
{
    QString path; ///< a product path below Docs
    QString anchor;
};

/// The page and, when the address is `anchored`, what stands behind its last "#". Nothing when the
/// address is not below `docs`, so that a link file cannot make us open what lies elsewhere.
std::optional<LinkedPage> pageOf(const QString &address, const QString &docs, bool anchored);

// The whole files. All throw Unwinding when Stop was pressed.

/// UTF-16 with mark, CRLF: the three column names, then status, identifier and link of each,
/// separated by tabs.
QByteArray reportText(const ListedLinks &list, const Progress &progress = {});

/// UTF-8 with mark, CRLF, quoted where needed; addresses as the list shows them.
QByteArray reportCsv(const ListedLinks &list, const Progress &progress = {});

/// A web page, UTF-8. `linkFor` gives the URL of an address, or "" when it shall be no link.
QByteArray reportHtml(const ListedLinks &list, const ReportHead &head,
                      const std::function<QString(const QString &address)> &linkFor,
                      const Progress &progress = {});
