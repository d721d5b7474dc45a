#include "controls/parts/ListCommands.h"

#include "resources/Icons.h"

#include <QAction>
#include <QPushButton>

using namespace Qt::StringLiterals;

namespace {

QString withoutMnemonic(QString text)
{
    return text.remove(u'&');
}

} // namespace

QAction *addListAction(QWidget *list, const QString &text, QLatin1StringView picture,
                       const QKeySequence &keys, std::function<void()> run)
{
    auto *action = new QAction(icon(picture), text, list);
    action->setShortcut(keys);
    action->setShortcutContext(Qt::WidgetShortcut);
    action->setShortcutVisibleInContextMenu(true);
    list->addAction(action);
    QObject::connect(action, &QAction::triggered, list, std::move(run));
    return action;
}

ListCommands::ListCommands(QWidget *list)
    : QObject(list)
    , m_list(list)
{
    list->setContextMenuPolicy(Qt::ActionsContextMenu);
}

QAction *ListCommands::add(QPushButton *button, const QKeySequence &keys, std::function<void()> run)
{
    const QString text =
        button->text().isEmpty() ? button->accessibleName() : withoutMnemonic(button->text());
    QAction *const command = addListAction(m_list, text, {}, keys, std::move(run));
    command->setIcon(button->icon());
    command->setObjectName(button->objectName() + u"Action"_s);
    connect(button, &QPushButton::clicked, command, &QAction::trigger);
    connect(command, &QAction::changed, button, [command, button] {
        button->setEnabled(command->isEnabled());
        button->setToolTip(command->toolTip());
    });
    offer(command, {});
    return command;
}

void ListCommands::offer(QAction *command, const QString &whyNot)
{
    const QString keys = command->shortcut().toString(QKeySequence::NativeText);
    const QString about =
        keys.isEmpty() ? command->text() : u"%1 (%2)"_s.arg(command->text(), keys);
    command->setEnabled(whyNot.isEmpty());
    command->setToolTip(whyNot.isEmpty() ? about : whyNot);
}
