#include "controls/parts/NoticeBar.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>

NoticeBar::NoticeBar(const QString &objectName, QWidget *parent)
    : QWidget(parent)
    , m_row(new QHBoxLayout(this))
    , m_text(new QLabel(this))
{
    setObjectName(objectName);
    m_text->setTextFormat(Qt::PlainText);
    m_text->setWordWrap(true);
    m_row->setContentsMargins({});
    m_row->addWidget(m_text, 1);
    hide();
}

void NoticeBar::setText(const QString &text)
{
    m_text->setText(text);
    setAccessibleDescription(text);
}

QPushButton *NoticeBar::addButton(const QString &objectName, const QString &text)
{
    auto *button = new QPushButton(text, this);
    button->setObjectName(objectName);
    m_row->addWidget(button);
    return button;
}
