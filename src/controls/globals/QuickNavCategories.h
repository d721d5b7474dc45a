#pragma once

#include <QWidget>

#include <functional>

class ProjectSession;
class QAction;
class QLabel;
class QTreeWidget;
class ListCommands;

/// The names that categories of the quick navigation are chosen from.
class QuickNavCategories final : public QWidget
{
    Q_OBJECT

public:
    explicit QuickNavCategories(ProjectSession &session, QWidget *parent = nullptr);

Q_SIGNALS:
    void changed(); ///< by the author

private:
    void layOut();
    void rebuild();
    void offerCommands();
    void askAdd();
    void askRename();
    void askDelete();
    bool perform(const QString &choose, const QString &done, const std::function<void()> &body);
    [[nodiscard]] QStringList namesBut(const QString &name);

    ProjectSession &m_session;
    QTreeWidget *tvwCategories;
    QLabel *m_problem;
    ListCommands *m_commands;
    QAction *m_rename = nullptr, *m_delete = nullptr;
};
