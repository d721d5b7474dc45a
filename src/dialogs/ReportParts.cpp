#include "dialogs/ReportParts.h"

#include "resources/Texts.h"

#include <QDialogButtonBox>
#include <QLabel>
#include <QPushButton>
#include <QTextDocument>

using namespace Qt::StringLiterals;

QLabel *reportLabel(const QString &text, QWidget *parent)
{
    auto *const label = new QLabel(text, parent);
    label->setTextFormat(Qt::PlainText);
    label->setWordWrap(true);
    return label;
}

QLabel *logLabel(const QString &text, const QString &nativePath, QWidget *parent)
{
    QLabel *const label = reportLabel(text, parent);
    label->setObjectName(u"lblLog"_s);
    label->setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
    label->setToolTip(Qt::convertFromPlainText(nativePath));
    return label;
}

QDialogButtonBox *closeBox(QDialog *dialog)
{
    auto *const box = new QDialogButtonBox(QDialogButtonBox::Close, dialog);
    QPushButton *const close = box->button(QDialogButtonBox::Close);
    close->setObjectName(u"cmdClose"_s);
    close->setText(text(Text::Close));
    close->setDefault(true);
    QObject::connect(box, &QDialogButtonBox::rejected, dialog, &QDialog::reject);
    return box;
}

QPushButton *addReportButton(QDialogButtonBox *box, const QString &caption, const QString &name)
{
    QPushButton *const button = box->addButton(caption, QDialogButtonBox::ActionRole);
    button->setObjectName(name);
    button->setAutoDefault(false);
    return button;
}

QSize reportSize(const QWidget &dialog)
{
    const QFontMetrics metrics = dialog.fontMetrics();
    return {150 * metrics.averageCharWidth(), 26 * metrics.height()};
}
