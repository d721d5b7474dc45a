#include "startup/FormWindow.h"

#include "resources/Icons.h"
#include "resources/Texts.h"
#include "startup/ExternalPrograms.h"
#include "startup/HelpTopics.h"

#include <QCloseEvent>
#include <QCoreApplication>
#include <QKeyEvent>
#include <QPushButton>
#include <QScopedValueRollback>
#include <QWindow>

using namespace Qt::StringLiterals;

namespace {

/// Keeps F1 in a form and in the dialogs that belong to it away from everyone else.
class HelpKey final : public QObject
{
public:
    HelpKey(FormWindow *form, std::function<void(const QWidget *)> show)
        : QObject(form)
        , m_form(form)
        , m_show(std::move(show))
    {
        QCoreApplication::instance()->installEventFilter(this);
    }

private:
    bool eventFilter(QObject *watched, QEvent *event) override
    {
        if (event->type() != QEvent::KeyPress || !watched->isWidgetType())
            return false;
        const auto *const key = static_cast<const QKeyEvent *>(event);
        const auto *const pressed = static_cast<const QWidget *>(watched);
        if (key->key() != Qt::Key_F1 || key->modifiers() != Qt::NoModifier || !isOurs(pressed))
            return false;
        const QWidget *const focused = pressed->window()->focusWidget();
        m_show(focused != nullptr ? focused : pressed);
        return true;
    }

    [[nodiscard]] bool isOurs(const QWidget *widget) const
    {
        while (widget != nullptr && qobject_cast<const FormWindow *>(widget) == nullptr)
            widget = widget->parentWidget();
        return widget == m_form;
    }

    FormWindow *m_form;
    std::function<void(const QWidget *)> m_show;
};

/// Refuses the system's close while a form is closing, which mostly means that a question is open.
/// Qt would take the native window away under the question, and No would leave a form without one.
class CloseOnce final : public QObject
{
public:
    CloseOnce(FormWindow *form, const bool &isClosing)
        : QObject(form)
        , m_isClosing(isClosing)
    {
    }

private:
    bool eventFilter(QObject *, QEvent *event) override
    {
        if (event->type() != QEvent::Close || !m_isClosing)
            return false;
        event->ignore();
        return true;
    }

    const bool &m_isClosing;
};

} // namespace

FormWindow::FormWindow(Program &program, QWidget *parent)
    : QWidget(parent)
    , m_program(program)
    , m_closeOnce(new CloseOnce(this, m_closing))
{
    setWindowTitle(text(Text::WindowTitle));
    setWindowIcon(icon("app"_L1));
    new HelpKey(this, [this](const QWidget *place) { showHelp(place); });
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
    if (visible && windowHandle() != nullptr)
        windowHandle()->installEventFilter(m_closeOnce);
}

void FormWindow::closeEvent(QCloseEvent *event)
{
    bool cancel = false;
    if (!m_closed) {
        const QScopedValueRollback closing(m_closing, true);
        Form_Unload(cancel);
    }
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

void FormWindow::showHelp(const QWidget *place)
{
    const auto shape = [this](const QvError &error) {
        return inProcedure(error, u"showHelp"_s, objectName());
    };
    trapped(shape, [&] { OpenHelpTopic(m_program, u"Content"_s, helpTopicOf(place)); });
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
