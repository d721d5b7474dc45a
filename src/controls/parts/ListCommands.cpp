#include "controls/parts/ListCommands.h"

#include <QAction>
#include <QPushButton>

using namespace Qt::StringLiterals;

namespace {

QString withoutMnemonic(QString text)
{
    return text.remove(u'&');
}

} // namespace

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
    auto *command = new QAction(button->icon(), text, m_list);
    command->setObjectName(button->objectName() + u"Action"_s);
    command->setShortcut(keys);
    command->setShortcutContext(Qt::WidgetShortcut);
    command->setShortcutVisibleInContextMenu(true);
    m_list->addAction(command);
    connect(command, &QAction::triggered, m_list, std::move(run));
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
