#include "controls/parts/LateWidget.h"

#include "controls/Resizer.h"

using namespace Qt::StringLiterals;

namespace {

bool takesFocus(const QWidget *widget)
{
    return widget->focusPolicy() != Qt::NoFocus && widget->focusProxy() == nullptr;
}

} // namespace

void LateWidget::setVisible(bool visible)
{
    if (visible)
        makeContent();
    QWidget::setVisible(visible);
}

void LateWidget::makeContent()
{
    if (m_hasContent)
        return;
    m_hasContent = true;
    layOut();
    moveContentInTabOrder();
    new Resizer(u"Resizer2"_s, this);
}

// New widgets stand behind all others of the window.
void LateWidget::moveContentInTabOrder()
{
    QWidget *before = previousInFocusChain();
    while (before != this && !takesFocus(before))
        before = before->previousInFocusChain();
    if (before == this || isAncestorOf(before))
        return; // there are no others
    QWidgetList content;
    for (QWidget *next = nextInFocusChain(); next != this; next = next->nextInFocusChain()) {
        if (takesFocus(next) && isAncestorOf(next))
            content.append(next);
    }
    for (QWidget *const part : content) {
        setTabOrder(before, part);
        before = part;
    }
}
