#include "startup/FormWindow.h"

#include "resources/Icons.h"
#include "resources/Texts.h"

#include <QCloseEvent>
#include <QKeyEvent>
#include <QPushButton>

using namespace Qt::StringLiterals;

FormWindow::FormWindow(Program &program, QWidget *parent)
    : QWidget(parent)
    , m_program(program)
{
    setWindowTitle(text(Text::WindowTitle));
    setWindowIcon(icon("app"_L1));
}

void FormWindow::load()
{
    if (m_loaded)
        return;
    m_loaded = true;
    Form_Load();
}

void FormWindow::setVisible(bool visible)
{
    if (visible)
        load();
    if (!visible || !m_closed)
        QWidget::setVisible(visible);
}

void FormWindow::closeEvent(QCloseEvent *event)
{
    bool cancel = false;
    if (!m_closed)
        Form_Unload(cancel);
    event->setAccepted(!cancel);
    if (cancel || m_closed)
        return;
    m_closed = true;
    Q_EMIT unloaded();
    deleteLater();
}

void FormWindow::keyPressEvent(QKeyEvent *event)
{
    QAbstractButton *const button = buttonFor(event->key());
    if (button && button->isVisible())
        button->click();
    else
        QWidget::keyPressEvent(event);
}

QAbstractButton *FormWindow::buttonFor(int key) const
{
    switch (key) {
    case Qt::Key_Escape:
        return cancelButton();
    case Qt::Key_F1:
        return helpButton();
    case Qt::Key_Enter:
    case Qt::Key_Return:
        if (const auto focused = qobject_cast<QPushButton *>(focusWidget()))
            return focused;
        for (QPushButton *const button : findChildren<QPushButton *>()) {
            if (button->isDefault())
                return button;
        }
        return nullptr;
    default:
        return nullptr;
    }
}

void FormWindow::trapped(const std::function<Message(const QvError &)> &shape,
                         const std::function<void()> &body)
{
    const auto showError = [&](const QvError &error) { m_program.messages.show(shape(error)); };
    try {
        trap(showError, body);
    } catch (const Unwinding &) {
        // Stopped, or the program is ending: the handler is the rim, nothing flies into the event
        // loop.
    }
}

bool FormWindow::saysYes(const QString &question)
{
    return m_program.messages.show({question, Buttons::YesNo, u"QV Developer"_s}) == Answer::Yes;
}
