#pragma once

#include "controls/globals/CategoryCommands.h"

#include <QWidget>

class ListCommands;
class QAction;
class QLabel;
class QTreeWidget;
class QVBoxLayout;

/// The project's own categories beside the default ones, which all projects of the server share.
class CategoriesPage final : public QWidget
{
    Q_OBJECT

public:
    explicit CategoriesPage(ProjectSession &session, QWidget *parent = nullptr);

Q_SIGNALS:
    void added();
    void deleted();
    void renamed();

private:
    void layOut();
    QWidget *ownSide();
    QWidget *defaultSide();
    void connectSession();
    void rebuild();
    void showOwn();
    void showDefaults();
    void offerCommands();

    void askAdd();
    void askChange();
    void askJoin();
    void askDelete();
    void adopt();
    void askReplacement(const QString &title, const QString &question, const QString &button,
                        bool mayTakeAway, const std::function<void(const QString &)> &run);
    bool perform(const QString &choose, const QString &done, const std::function<void()> &body);

    [[nodiscard]] const KnownCategory *chosen() const;
    [[nodiscard]] QStringList namesBut(const QString &name) const;
    [[nodiscard]] QStringList replacements(const QString &name);

    ProjectSession &m_session;
    QList<KnownCategory> m_known;
    QList<Category> m_defaults;
    QTreeWidget *tvwCategories, *tvwDefaultCategories;
    QLabel *m_problem;
    ListCommands *m_ownCommands, *m_defaultCommands;
    QAction *m_change = nullptr, *m_join = nullptr, *m_delete = nullptr, *m_adopt = nullptr;
};
