#pragma once

#include <QLabel>

/// A label that shows text from files letter by letter, in as many lines as it needs.
inline QLabel *plainLabel(const QString &text, QWidget *parent = nullptr)
{
    auto *label = new QLabel(text, parent);
    label->setTextFormat(Qt::PlainText);
    label->setWordWrap(true);
    return label;
}
