#pragma once

#include "reports/IdentifierIndex.h"
#include "startup/FormWindow.h"

#include <memory>

class IdentifiersPage;
class QLabel;
class QPushButton;
class QTabWidget;
class RepairPage;
class SetsPage;
class WhoLinksPage;

/// How other programs find the window of the index manager: with its caption, 5863.
inline constexpr QLatin1StringView indexManagerWindowClass{"WindowsForms10.Window.8.app3"};

/// The index manager: the link identifiers of all sets of an installation, who links to what, which
/// link files are behind their pages, and the repair of those that pages moved away from.
class frmIndexManager final : public FormWindow
{
    Q_OBJECT

public:
    explicit frmIndexManager(Program &program, QWidget *parent = nullptr);

    void bringToFront();
    /// Closes the window as its close box would; long work is stopped first.
    void closeAsAsked();

private:
    void Form_Load() override;
    [[nodiscard]] QWidget *makeHead();
    void makePages();
    void readAgain();
    void showHelp();
    void showIndex(std::shared_ptr<const IdentifierIndex> index, const QString &whyEmpty);
    void lookAtSets();

    std::shared_ptr<const IdentifierIndex> m_index;
    QLabel *m_server;
    QPushButton *m_help = nullptr;
    QWidget *m_head; // before the pages: Tab follows the eye
    QTabWidget *m_tabs;
    IdentifiersPage *m_identifiers;
    WhoLinksPage *m_whoLinks;
    SetsPage *m_sets;
    RepairPage *m_repair;
};
