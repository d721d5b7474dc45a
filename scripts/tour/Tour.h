#pragma once

#include "Camera.h"
#include "TourWorld.h"

class FormWindow;
class QTabWidget;

/// The path an author walks, through the real windows: from the first start to an edited project,
/// and through the life of whole projects.
class Tour
{
public:
    Tour(TourWorld &world, Camera &camera, const QDir &documentation, const QDir &ownPages);

    void play();

private:
    void start();
    void createProject();
    void createBook(const QString &name, const QString &acronym);
    void addPages(const QString &folder);
    void editAndSave();
    void lookAround();
    void leaveForLauncher();
    void copyProject();
    void deleteBook();

    // TourEditors.cpp: a day's work in the editors
    void lookAtPage();
    void renamePage();
    void findInPages();
    void planQuickNav();
    void lookAtGlobals();
    void lookThrough(QWidget *main);

    // TourBuild.cpp: build, findings, search, packing
    void buildAndPack();
    void pack(QWidget *build, QTabWidget *results);

    // TourCompanions.cpp: the programs beside this one
    void readInViewer(const QString &set, const QString &book, const QString &question);
    void manageIdentifiers();
    void workFromScripts();
    QString printedBy(const QList<QStringList> &commands);

    // TourLifeCycle.cpp: whole projects
    void createSecondProject();
    void rankBookSets();
    void mergeProjects();
    void reportLinks();
    void reopenSet();
    void migrateBookSet();
    void deleteProject();
    void leave();

    [[nodiscard]] QWidget *window(Form form);
    void click(QWidget *window, const char *button);
    /// Presses the button with this text in the next message box, taking a picture first.
    void answer(const QString &button, const QString &picture, const QString &caption);
    /// Presses these buttons in the message boxes that come one after the other.
    void answerAll(const QStringList &buttons);
    void backToLauncher(const QStringList &answers);
    void putLinkFile(const QString &project, const QStringList &targets,
                     const QStringList &references);
    [[nodiscard]] QString pagesOf(const QString &book) const;
    QString takeOver(const QString &book);

    TourWorld &m_world;
    Camera &m_camera;
    QDir m_documentation;
    QDir m_ownPages;
};
