#include "controls/pages/LinkCompleter.h"

#include "controls/pages/LinkChoices.h"
#include "controls/pages/PageTextView.h"
#include "platform/Paths.h"
#include "tools/LinkContext.h"
#include "tools/PageReference.h"

#include <QAbstractItemView>
#include <QCompleter>
#include <QScrollBar>
#include <QTextBlock>

using namespace Qt::StringLiterals;

LinkCompleter::LinkCompleter(PageTextView *view, Index index)
    : QObject(view)
    , m_view(view)
    , m_index(std::move(index))
    , m_choices(new LinkChoices(this))
    , m_completer(new QCompleter(m_choices, this))
{
    m_completer->setWidget(view);
    m_completer->setCompletionMode(QCompleter::PopupCompletion);
    m_completer->setCaseSensitivity(Qt::CaseInsensitive);
    m_completer->setFilterMode(Qt::MatchContains);
    m_completer->setMaxVisibleItems(12);
    m_completer->popup()->setObjectName(u"lstLinkChoices"_s);
    m_completer->popup()->setAccessibleName(tr("Pages and places to link to"));
    m_completer->popup()->setTextElideMode(Qt::ElideMiddle);
    connect(m_completer, qOverload<const QModelIndex &>(&QCompleter::activated), this,
            &LinkCompleter::insert);
    connect(m_view->document(), &QTextDocument::contentsChange, this, &LinkCompleter::textEdited);
    m_view->setPopup(m_completer->popup());
}

void LinkCompleter::textEdited(int, int removed, int added)
{
    const bool isTyping = m_view->hasFocus() && removed <= 1 && added <= 1 && removed != added;
    if (isTyping) // once the cursor is where it will be
        QMetaObject::invokeMethod(this, &LinkCompleter::offer, Qt::QueuedConnection);
}

QString LinkCompleter::textBefore() const
{
    const QTextCursor cursor = m_view->textCursor();
    constexpr int enough = 2000;
    const QString line = cursor.block().text();
    const int at = cursor.positionInBlock();
    return line.mid(qMax(0, at - enough), qMin(at, enough));
}

void LinkCompleter::offer()
{
    const PageIndex *index = m_index();
    const auto context = linkContext(textBefore());
    if (!context || index == nullptr || m_view->isReadOnly()) {
        m_completer->popup()->hide();
        return;
    }
    const qsizetype hash = context->typed.indexOf(u'#');
    QString prefix = context->typed;
    QString shown = context->isResource ? u"src"_s : u"href"_s;
    if (!m_completer->popup()->isVisible())
        m_shown.clear(); // more may be known since
    if (hash >= 0) {
        const PageTarget target = targetOf(context->typed.first(hash));
        const auto path = target.path.isEmpty() ? std::optional(m_page)
                                                : joined(parentFolder(m_page), target.path);
        shown = u'#' + path.value_or(QString());
        prefix = context->typed.sliced(hash);
        if (shown != m_shown)
            m_choices->show(anchorChoices(*index, path.value_or(QString())));
    } else if (shown != m_shown) {
        m_choices->show(context->isResource ? pictureChoices(*index) : pageChoices(*index));
    }
    m_shown = shown;
    m_completer->setCompletionPrefix(prefix.section(u'/', -1));
    QRect place = m_view->cursorRect();
    place.translate(m_view->viewport()->pos());
    const QAbstractItemView *popup = m_completer->popup();
    place.setWidth(m_view->fontMetrics().averageCharWidth() * 60
                   + popup->verticalScrollBar()->sizeHint().width());
    m_completer->complete(place);
}

void LinkCompleter::insert(const QModelIndex &chosen)
{
    const auto context = linkContext(textBefore());
    if (!context)
        return;
    QTextCursor cursor = m_view->textCursor();
    cursor.setPosition(cursor.position() - static_cast<int>(context->typed.size()),
                       QTextCursor::KeepAnchor);
    cursor.insertText(referenceTo(m_page, chosen.data(LinkChoices::PathRole).toString(),
                                  chosen.data(LinkChoices::AnchorRole).toString()));
    m_completer->popup()->hide();
}
