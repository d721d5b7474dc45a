#pragma once

#include "tools/PageIndex.h"

#include <QObject>

#include <functional>

class LinkChoices;
class PageTextView;
class QCompleter;

/// Offers pages, anchors and pictures while a reference is typed into href="..." or src="...". The
/// choices come from what is known of the pages already; no file is touched.
class LinkCompleter final : public QObject
{
    Q_OBJECT

public:
    using Index = std::function<const PageIndex *()>; ///< null while nothing is known

    LinkCompleter(PageTextView *view, Index index);

    /// The page that is edited, relative to the project folder.
    void setPage(const QString &page) { m_page = page; }

private:
    void textEdited(int at, int removed, int added);
    void offer();
    void insert(const QModelIndex &chosen);
    [[nodiscard]] QString textBefore() const;

    PageTextView *m_view;
    Index m_index;
    QString m_page;
    LinkChoices *m_choices;
    QCompleter *m_completer;
    QString m_shown; ///< what the choices are of
};
