#include "controls/pages/KeptTextsDialog.h"

#include <QDialogButtonBox>
#include <QFontMetrics>
#include <QLabel>
#include <QListWidget>
#include <QPushButton>
#include <QVBoxLayout>

using namespace Qt::StringLiterals;

KeptTextsDialog::KeptTextsDialog(const QStringList &pages, QWidget *parent)
    : QDialog(parent)
{
    setObjectName(u"dlgKeptTexts"_s);
    setWindowTitle(tr("Unsaved text that was kept"));
    auto *label = new QLabel(
        tr("&Open a page to see what was kept of it; a bar above its text offers it."), this);
    label->setWordWrap(true);
    auto *list = new QListWidget(this);
    list->setObjectName(u"lstKept"_s);
    list->setTextElideMode(Qt::ElideMiddle);
    list->addItems(pages);
    list->setCurrentRow(0);
    label->setBuddy(list);
    auto *buttons = new QDialogButtonBox(QDialogButtonBox::Close, this);
    QPushButton *open = buttons->addButton(tr("Open &page"), QDialogButtonBox::ActionRole);
    open->setObjectName(u"cmdOpenKept"_s);
    open->setDefault(true);
    const auto choose = [this, list] {
        if (list->currentItem() != nullptr)
            Q_EMIT pageRequested(list->currentItem()->text());
    };
    connect(open, &QPushButton::clicked, this, choose);
    connect(list, &QListWidget::itemDoubleClicked, this, choose);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::close);
    auto *layout = new QVBoxLayout(this);
    layout->addWidget(label);
    layout->addWidget(list);
    layout->addWidget(buttons);
    resize(70 * fontMetrics().averageCharWidth(), 15 * fontMetrics().height());
}
