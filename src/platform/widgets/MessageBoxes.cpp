#include "platform/widgets/MessageBoxes.h"

#include <QApplication>
#include <QLabel>
#include <QMessageBox>
#include <QPushButton>

namespace {

struct ButtonSet
{
    QMessageBox::StandardButtons buttons;
    QMessageBox::StandardButton initial;
    QMessageBox::StandardButton escape;
};

ButtonSet buttonSet(Buttons buttons)
{
    switch (buttons) {
    case Buttons::YesNo:
        return {QMessageBox::Yes | QMessageBox::No, QMessageBox::Yes, QMessageBox::No};
    case Buttons::OkCancel:
        return {QMessageBox::Ok | QMessageBox::Cancel, QMessageBox::Ok, QMessageBox::Cancel};
    case Buttons::Ok:
        break;
    }
    return {QMessageBox::Ok, QMessageBox::Ok, QMessageBox::Ok};
}

Answer answerOf(int button)
{
    switch (button) {
    case QMessageBox::Yes:
        return Answer::Yes;
    case QMessageBox::No:
        return Answer::No;
    case QMessageBox::Cancel:
        return Answer::Cancel;
    default:
        return Answer::Ok;
    }
}

/// A message box without markup in any of its texts; the informative text follows `setTextFormat`
/// only from its own label.
void setTexts(QMessageBox &box, const QString &text, const QString &details)
{
    box.setTextFormat(Qt::PlainText);
    box.setText(text);
    box.setInformativeText(details);
    const QList<QLabel *> labels = box.findChildren<QLabel *>();
    for (QLabel *label : labels)
        label->setTextFormat(Qt::PlainText);
    box.setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
}

} // namespace

Answer MessageBoxes::show(const Message &message)
{
    QMessageBox box(QApplication::activeWindow());
    box.setWindowTitle(message.title);
    box.setIcon(message.icon == MessageIcon::Critical ? QMessageBox::Critical
                                                      : QMessageBox::Information);
    setTexts(box, message.text, message.details);
    const ButtonSet set = buttonSet(message.buttons);
    box.setStandardButtons(set.buttons);
    box.setDefaultButton(message.enterRefuses ? set.escape : set.initial);
    box.setEscapeButton(set.escape);
    return answerOf(box.exec());
}

int MessageBoxes::choose(const Choice &choice)
{
    QMessageBox box(QApplication::activeWindow());
    box.setWindowTitle(choice.title);
    box.setIcon(QMessageBox::Information);
    setTexts(box, choice.text, {});
    QList<QAbstractButton *> buttons;
    for (const QString &answer : choice.answers) {
        QPushButton *const button = box.addButton(answer, QMessageBox::ActionRole);
        if (buttons.size() == choice.initial)
            box.setDefaultButton(button);
        buttons.append(button);
    }
    if (!buttons.isEmpty())
        box.setEscapeButton(buttons.last());
    box.exec();
    const qsizetype chosen = buttons.indexOf(box.clickedButton());
    return int(chosen < 0 ? buttons.size() - 1 : chosen);
}
