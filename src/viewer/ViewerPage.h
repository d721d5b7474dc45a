#pragma once

#include "viewer/ViewerPlace.h"
#include "viewer/ViewerWorld.h"

#include <QWidget>

class FindInPage;
class PagePreview;
class PictureFit;
class QPagedPaintDevice;
class QUrl;

/// The page that is shown, with finding below it. It loads files of its own set or of the help
/// only.
class ViewerPage final : public QWidget
{
    Q_OBJECT

public:
    explicit ViewerPage(ViewerWorld &world, QWidget *parent = nullptr);

    /// Shows a page, or why it cannot be shown. What was asked for is marked, as `searchMarks`
    /// says; else the page is at its anchor, or `scroll` down.
    void open(const ViewerPlace &place, const QStringList &asked = {}, int scroll = 0);
    [[nodiscard]] int scroll() const;
    /// Steps larger than the usual size; negative for smaller.
    void zoom(int steps);
    [[nodiscard]] FindInPage *finding() const { return m_finding; }
    void print(QPagedPaintDevice &printer) const;
    /// The title of the page; its file name when it has none.
    [[nodiscard]] QString title() const;

Q_SIGNALS:
    void placeRequested(const ViewerPlace &place);
    void told(const QString &text); ///< for the status bar
    void rereadRequested();

private:
    void follow(const QString &path, const QString &anchor);
    void followIdentifier(const QUrl &url);
    void load(const ViewerPlace &place);
    [[nodiscard]] QString folderOf(const ViewerPlace &place) const;
    [[nodiscard]] QString languageOf(const QString &set) const;
    void mark(const QStringList &asked);

    ViewerWorld &m_world;
    ViewerPlace m_place;
    QString m_title;
    QString m_folder; ///< of the page's set or of the help; "" while a message is shown
    PagePreview *m_view;
    PictureFit *m_pictures;
    FindInPage *m_finding;
    int m_zoom = 0;
};
