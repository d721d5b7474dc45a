#include "controls/tree/FilterBox.h"

#include <QAccessible>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QVBoxLayout>

using namespace Qt::StringLiterals;

FilterBox::FilterBox(QWidget *parent)
    : QWidget(parent)
    , txtFilter(new QLineEdit(this))
    , lblMatches(new QLabel(this))
{
    txtFilter->setObjectName(u"txtFilter"_s);
    txtFilter->setPlaceholderText(tr("Filter"));
    txtFilter->setClearButtonEnabled(true);
    txtFilter->setAccessibleName(tr("Filter of the project tree"));
    txtFilter->setToolTip(
        tr("Shows the books, pages and nodes that hold all these words (Ctrl+F)"));
    txtFilter->installEventFilter(this);
    lblMatches->setObjectName(u"lblMatches"_s);
    lblMatches->hide();

    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins({});
    layout->addWidget(txtFilter);
    layout->addWidget(lblMatches);
    connect(txtFilter, &QLineEdit::textChanged, this,
            [this](const QString &text) { Q_EMIT textChanged(text.trimmed()); });
}

QString FilterBox::text() const
{
    return txtFilter->text().trimmed();
}

void FilterBox::clear()
{
    txtFilter->clear();
}

void FilterBox::enter()
{
    txtFilter->setFocus();
    txtFilter->selectAll();
}

void FilterBox::say(const QString &what)
{
    if (what == lblMatches->text())
        return;
    lblMatches->setText(what);
    lblMatches->setVisible(!what.isEmpty());
    txtFilter->setAccessibleDescription(what);
    if (what.isEmpty())
        return;
#if QT_CONFIG(accessibility)
    QAccessibleEvent event(lblMatches, QAccessible::Alert);
    QAccessible::updateAccessibility(&event);
#endif
}

bool FilterBox::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() != QEvent::KeyPress)
        return QWidget::eventFilter(watched, event);
    const int key = static_cast<QKeyEvent *>(event)->key();
    if (key == Qt::Key_Escape && !txtFilter->text().isEmpty())
        txtFilter->clear();
    else if (key == Qt::Key_Down || key == Qt::Key_Return || key == Qt::Key_Enter
             || key == Qt::Key_Escape)
        Q_EMIT left();
    else
        return QWidget::eventFilter(watched, event);
    return true;
}
