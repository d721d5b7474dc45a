#include "controls/parts/NoticeBar.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

NoticeBar::NoticeBar(const QString &objectName, QWidget *parent)
    : QWidget(parent)
    , m_row(new QHBoxLayout)
    , m_text(new QLabel(this))
{
    setObjectName(objectName);
    m_text->setTextFormat(Qt::PlainText);
    m_text->setWordWrap(true);
    // Below each other: beside three buttons a narrow pane leaves the text no room.
    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins({});
    layout->addWidget(m_text);
    layout->addLayout(m_row);
    m_row->addStretch();
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
