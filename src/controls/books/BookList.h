#pragma once

#include "controls/session/ProjectSession.h"

#include <QWidget>

class QLineEdit;
class QListWidget;
class QPushButton;

/// The books of the project, with New and Delete.
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

private:
    void layOut();
    void filter(const QString &text);
    void choose(int row);
    [[nodiscard]] int rowOfCurrent() const;

    ProjectSession &m_session;
    QLineEdit *txtFilter;
    QListWidget *lstBooks;
    QPushButton *cmdNew;
    QPushButton *cmdDelete;
};
