#pragma once

#include "controls/pages/PageStore.h"
#include "controls/pages/RecoveryKeeper.h"

#include <QWidget>

class NoticeBar;
class PageEditor;
class QLabel;
class QPushButton;
class QToolButton;
struct DraggedNodes;

/// The source of one page: loading, saving in its encoding, unlocking, what was kept of unsaved
/// text, and what other authors do to the file meanwhile. Asked by the session before the selection
/// changes, it saves.
class PagePane final : public QWidget
{
    Q_OBJECT

public:
    explicit PagePane(ProjectSession &session, QWidget *parent = nullptr);
    ~PagePane() override;

    /// Shows a page; with none, `whyNone` or what to do. Unsaved text of a page that goes is kept
    /// for recovery; that page stays while this fails. The page that is shown already stays as it
    /// is, and follows its file to another place.
    void showPage(const std::optional<PageRef> &ref, const QString &whyNone = {});
    /// The page as read; null when none is shown.
    [[nodiscard]] const OpenPage *page() const { return m_page ? &*m_page : nullptr; }
    [[nodiscard]] QString text() const; ///< as edited so far
    /// Marks a place of the text and brings it into view.
    void showPlace(qsizetype start, qsizetype length);
    /// The selected text where it lies in one line, else "".
    [[nodiscard]] QString selectedLine() const;

    /// Writes unsaved text. False when it is still unsaved.
    bool save();
    /// Asks what to do with unsaved text before the window closes; refused text stays until then.
    /// False when the author wants to stay.
    bool mayLeave();
    /// Reads the page again when somebody else changed it; with unsaved text it says so in a bar.
    void noticeChanges();

Q_SIGNALS:
    void pageShown(); ///< another page, or the same one read again
    void saved(const QString &file);

private:
    void layOut();
    QWidget *head();
    void makeBars();
    void connectParts();

    void load(const PageRef &ref);
    void showText();
    void watchPage();
    bool leaveUnsaved();
    bool followsTo(const std::optional<PageRef> &ref);
    void showProblem(const QString &problem);
    void updateState();
    void showLock();

    bool write();
    void showSaved();
    bool saveAsUtf8(const QString &reason);
    void convertToUtf8();
    void insertLink();
    void insertLinksTo(const DraggedNodes &dropped);
    void unlock();

    bool settleConflict();
    void askRevert();
    void revert();
    void reload();
    void keepMine();
    void keepMineOver(const OpenPage &seen);
    void compare();
    void noticeFiles(const QStringList &paths);

    void showKept();
    [[nodiscard]] std::optional<KeptText> keptText();
    void useKept();
    void discardKept();
    void forgetKept();
    void keepUnsaved();

    ProjectSession &m_session;
    PageStore m_store;
    std::optional<OpenPage> m_page;
    QString m_watched; ///< path of the page that the session looks after
    QString m_whyNone;
    QString m_offered; ///< where the kept text is that is offered; "" for none
    QString m_used;    ///< where the kept text lies that was used; it goes when that is saved
    int m_atEnd;       ///< what keeps unsaved text when the program ends at once

    QLabel *m_title;
    QToolButton *m_encoding;
    QLabel *m_problem;
    QPushButton *m_save;
    QPushButton *m_revert;
    NoticeBar *m_keptBar;
    NoticeBar *m_conflictBar;
    PageEditor *m_editor;
    RecoveryKeeper m_recovery;
};
