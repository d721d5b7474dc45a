#pragma once

#include <QWidget>

class CheckedField;
class FolderSize;
class ProjectSession;
class QFormLayout;
class QLabel;
class QPushButton;

/// What the open project is: its name and ID, which can be changed here, and what is known of it.
class ProjectPage final : public QWidget
{
    Q_OBJECT

public:
    explicit ProjectPage(ProjectSession &session, QWidget *parent = nullptr);

    void showProject();
    void askRename();

Q_SIGNALS:
    void renamed(); ///< the session has the new name

private:
    void showEvent(QShowEvent *event) override;
    void layOut();
    QLabel *addFact(QFormLayout *form, const QString &caption, const QString &objectName);
    void showFacts();
    void showListed();
    void countFiles();
    void commitId();

    ProjectSession &m_session;
    QLabel *m_name;
    QPushButton *cmdRename;
    CheckedField *txtId;
    QLabel *m_language, *m_platform, *m_variation, *m_processed, *m_migrated, *m_books, *m_folder;
    QLabel *m_size, *m_problem;
    FolderSize *m_counter;
    bool m_isCounted = false;
};
