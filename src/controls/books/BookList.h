#pragma once

#include "controls/session/ProjectSession.h"

#include <QWidget>

class QLineEdit;
class QListWidget;
class QPushButton;

/// The books of the project, in their order, with what can be done with them.
class BookList final : public QWidget
{
    Q_OBJECT

public:
    explicit BookList(ProjectSession &session, QWidget *parent = nullptr);

    void rebuild();
    /// Moves to the session's current book.
    void followSession();

Q_SIGNALS:
    void newRequested();
    void deleteRequested(const TocBook &book);
    void renameRequested(); ///< of the current book
    void changed();         ///< the order; no build has taken it in

private:
    void layOut();
    void addCommands();
    void move(int by);
    void filter(const QString &text);
    void choose(int row);
    [[nodiscard]] int rowOfCurrent() const;

    ProjectSession &m_session;
    QLineEdit *txtFilter;
    QListWidget *lstBooks;
    QPushButton *cmdNew;
    QPushButton *cmdDelete;
};
