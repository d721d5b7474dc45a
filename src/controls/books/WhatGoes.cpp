#include "controls/books/WhatGoes.h"

#include "controls/books/PagePlaces.h"
#include "controls/parts/PlainLabel.h"
#include "controls/session/ProjectPages.h"
#include "platform/FileSystem.h"
#include "platform/QvError.h"

#include <QCoreApplication>
#include <QListWidget>
#include <QSet>
#include <QVBoxLayout>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {
QString tr(const char *text)
{
    return QCoreApplication::translate("WhatGoes", text);
}

QListWidget *list(const QString &objectName, const QString &accessibleName, const QStringList &rows)
{
    auto *widget = new QListWidget;
    widget->setObjectName(objectName);
    widget->setAccessibleName(accessibleName);
    widget->setUniformItemSizes(true);
    widget->setTextElideMode(Qt::ElideMiddle);
    widget->addItems(rows);
    for (int row = 0; row < rows.size(); ++row)
        widget->item(row)->setToolTip(rows.at(row));
    const int shownRows = static_cast<int>(std::clamp<qsizetype>(rows.size() + 1, 3, 8));
    widget->setMaximumHeight(widget->sizeHintForRow(0) * shownRows);
    return widget;
}

QStringList linksTo(ProjectSession &session, const QSet<QString> &paths)
{
    QStringList links;
    const PageIndex &index = session.pages().current();
    for (const QString &path : paths) {
        for (const PageUse &use : index.usesOf(path)) {
            const IndexedPage *const page = index.page(use.page);
            if (page != nullptr && !paths.contains(page->path.toCaseFolded()))
                links.append(tr("%1, line %2").arg(page->path).arg(page->links.at(use.link).line));
        }
    }
    std::sort(links.begin(), links.end());
    return links;
}

void findCategories(const QList<QuickNavNode> &nodes, const QString &above, const QString &book,
                    const QSet<QString> &ids, QStringList &found)
{
    for (const QuickNavNode &node : nodes) {
        const QString path = above.isEmpty() ? node.name : above + u" > "_s + node.name;
        const bool leadsThere =
            std::any_of(node.links.cbegin(), node.links.cend(), [&](const QuickNavLink &link) {
                return link.book == book && ids.contains(link.page);
            });
        if (leadsThere)
            found.append(path);
        findCategories(node.children, path, book, ids, found);
    }
}

QStringList usesOf(ProjectSession &session, const TocBook &book, const QList<BookPage> &pages)
{
    QSet<QString> ids, paths;
    for (const BookPage &page : pages) {
        ids.insert(page.id);
        paths.insert(pathOfPage(session, book, page).toCaseFolded());
    }
    QStringList uses;
    const auto say = [&](const QvError &error) { uses.append(error.description()); };
    trap(say, [&] {
        findCategories(session.quickNav().views, {}, book.acronym, ids, uses);
        for (QString &use : uses)
            use.prepend(tr("Quick navigation: "));
    });
    trap(say, [&] { uses.append(linksTo(session, paths)); });
    return uses;
}

QString shownTitle(ProjectSession &session, const TocBook &book, const BookPage &page)
{
    const QString title =
        page.title.isEmpty() ? page.file : u"%1 (%2)"_s.arg(page.title, page.file);
    bool locked = false;
    trap([](const QvError &) {},
         [&] {
             locked = session.program()
                          .files.status(session.folder() + pathOfPage(session, book, page))
                          .readOnly;
         });
    return locked ? tr("%1, locked").arg(title) : title;
}
} // namespace

void addWhatGoes(QVBoxLayout *layout, ProjectSession &session, const TocBook &book,
                 const QList<BookPage> &pages)
{
    if (pages.isEmpty()) {
        layout->addWidget(plainLabel(tr("It has no pages.")));
        return;
    }
    QStringList titles;
    for (const BookPage &page : pages)
        titles.append(shownTitle(session, book, page));
    layout->addWidget(list(u"lstPages"_s, tr("Pages that go"), titles));
    const QStringList uses = usesOf(session, book, pages);
    if (uses.isEmpty()) {
        layout->addWidget(plainLabel(tr("Nothing else in the project leads to them.")));
        return;
    }
    layout->addWidget(
        plainLabel(u"\u26A0 "_s
                   + tr("These places lead to them and will lead nowhere (%1):").arg(uses.size())));
    layout->addWidget(list(u"lstUses"_s, tr("Places that lead to them"), uses));
}
