#include "controls/parts/CheckedField.h"

#include "platform/QvError.h"

#include <QDialog>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QMetaMethod>
#include <QVBoxLayout>

namespace {

// A dialog grows by itself for one line, and not for text that wraps.
void makeRoom(QWidget *field)
{
    field->layout()->activate();
    auto *const dialog = qobject_cast<QDialog *>(field->window());
    if (dialog == nullptr || !dialog->isVisible() || dialog->layout() == nullptr)
        return;
    dialog->layout()->activate();
    const int needed = dialog->layout()->totalHeightForWidth(dialog->width());
    if (needed > dialog->height())
        dialog->resize(dialog->width(), needed);
}

} // namespace

CheckedField::CheckedField(const QString &objectName, const QString &accessibleName, Rule problem,
                           Rule advice, QWidget *parent)
    : QWidget(parent)
    , m_edit(new QLineEdit(this))
    , m_says(new QLabel(this))
    , m_problem(std::move(problem))
    , m_advice(std::move(advice))
{
    m_edit->setObjectName(objectName);
    m_edit->setAccessibleName(accessibleName);
    m_edit->installEventFilter(this);
    m_says->setObjectName(objectName + QStringLiteral("Says"));
    m_says->setTextFormat(Qt::PlainText);
    m_says->setWordWrap(true);
    m_says->hide();
    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins({});
    layout->setSpacing(2);
    layout->addWidget(m_edit);
    layout->addWidget(m_says);
    setFocusProxy(m_edit);

    connect(m_edit, &QLineEdit::textEdited, this, [this] {
        m_edited = true;
        judge();
        Q_EMIT edited();
    });
    connect(m_edit, &QLineEdit::editingFinished, this, &CheckedField::editingFinished);
}

QString CheckedField::text() const
{
    return m_edit->text().trimmed();
}

void CheckedField::setText(const QString &text)
{
    m_edited = false;
    m_edit->setText(text);
    judge();
}

// What cannot be looked up on the disk is a problem, too.
QString CheckedField::problem() const
{
    QString problem;
    trap([&](const QvError &error) { problem = error.description(); },
         [&] { problem = m_problem(text()); });
    return problem;
}

void CheckedField::judge()
{
    const bool untouched = !m_edited && text().isEmpty();
    QString says = untouched ? QString() : problem();
    if (!says.isEmpty())
        says.prepend(QStringLiteral("\u26A0 "));
    else if (m_advice && !text().isEmpty())
        says = m_advice(text());
    m_says->setText(says);
    m_says->setVisible(!says.isEmpty());
    m_edit->setAccessibleDescription(says);
    makeRoom(this);
}

bool CheckedField::eventFilter(QObject *watched, QEvent *event)
{
    // Only somebody who listens takes the key: in a dialog Escape closes the dialog.
    const bool listens = isSignalConnected(QMetaMethod::fromSignal(&CheckedField::escaped));
    if (listens && event->type() == QEvent::KeyPress
        && static_cast<QKeyEvent *>(event)->key() == Qt::Key_Escape) {
        Q_EMIT escaped();
        return true;
    }
    return QWidget::eventFilter(watched, event);
}
