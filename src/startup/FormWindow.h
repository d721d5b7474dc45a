#pragma once

#include "startup/Errors.h"
#include "startup/Navigator.h"
#include "startup/Program.h"

#include <QWidget>

#include <functional>

class QAbstractButton;

/// What every window of the product has in common: made hidden, loaded once before it is first
/// shown, asked before it closes, deleted when it has closed; F1, there and in what it opened,
/// shows the help page about the place that has the focus.
/// Not a QDialog: there the Escape key hides the window without a close event.
class FormWindow : public QWidget
{
    Q_OBJECT

public:
    explicit FormWindow(Program &program, QWidget *parent = nullptr);

    /// Runs the load handler unless it has run.
    void load();
    [[nodiscard]] bool isLoaded() const { return m_loaded; }

    /// Loads before the first showing. A window that has closed, perhaps while it loaded, stays
    /// hidden.
    void setVisible(bool visible) override;

Q_SIGNALS:
    /// The window has closed and is about to be deleted.
    void unloaded();

protected:
    virtual void Form_Load() {}
    virtual void Form_Unload(bool &cancel) { Q_UNUSED(cancel) }

    /// The button that Escape presses; Enter presses the push button that has the focus, else the
    /// default one.
    [[nodiscard]] virtual QAbstractButton *cancelButton() const { return nullptr; }

    void closeEvent(QCloseEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;

    /// Runs a handler's body inside the error trap; the message box shows what `shape` makes.
    void trapped(const std::function<Message(const QvError &)> &shape,
                 const std::function<void()> &body);

    /// 5832 (or another close question) with Yes and No, title "QV Developer".
    bool saysYes(const QString &question);

    Program &m_program;

private:
    [[nodiscard]] QAbstractButton *buttonFor(int key) const;
    void showHelp(const QWidget *place);

    bool m_loaded = false;
    bool m_closing = false;
    bool m_closed = false;
    QObject *m_closeOnce;
};
