#pragma once

#include "Camera.h"
#include "TourWorld.h"

class FormWindow;

/// The path an author walks from the first start to an edited project, through the real windows.
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
    void leave();

    [[nodiscard]] QWidget *window(Form form);
    void click(QWidget *window, const char *button);
    /// Presses the button with this text in the next message box, taking a picture first.
    void answer(const QString &button, const QString &picture, const QString &caption);
    [[nodiscard]] QString pagesOf(const QString &book) const;

    TourWorld &m_world;
    Camera &m_camera;
    QDir m_documentation;
    QDir m_ownPages;
};
