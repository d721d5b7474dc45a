#pragma once

#include "reports/LinkReportModel.h"
#include "reports/ReportText.h"
#include "startup/FormWindow.h"

#include <memory>

namespace Ui {
class frmIBLReport;
}

/// The inter-book link report: every link of all projects on the server and whether its target is
/// present, as a list and as a file.
class frmIBLReport final : public FormWindow
{
    Q_OBJECT

public:
    explicit frmIBLReport(Program &program, QWidget *parent = nullptr);
    ~frmIBLReport() override;

private:
    enum Kind : qint16 { IBD = 0, IBS = 1 };

    void Form_Load() override;
    void SSTab_Click(int PreviousTab);
    void cmdGenerateReport_Click();
    [[nodiscard]] QAbstractButton *cancelButton() const override;
    void showEvent(QShowEvent *event) override;

    // The list
    void connectList();
    void connectCommands();
    void addSortMenu();
    void loadCaptions();
    void showTime();
    void collect(Kind kind);
    void listAgain();
    void sortAgain();
    void filterAgain();
    void showState();
    void enableRowCommands();
    void openPage();
    void copyRows(const std::function<QString(int row)> &textOf);
    [[nodiscard]] LinkOrder ordered(const LinkEntries &links, const Progress &progress) const;

    // frmIBLReportFiles.cpp: the list as a file
    [[nodiscard]] QString newReportFile(const QString &folder);
    bool write(const QString &file, const std::function<QByteArray(const Progress &)> &content);
    void cmdSaveAs_Click();
    [[nodiscard]] ReportHead head() const;
    [[nodiscard]] QByteArray content(const QString &file, const ReportHead &head,
                                     const Progress &progress) const;
    void saySaved(const QString &file);

    bool runUntilStopped(const QString &caption, const std::function<void(const Progress &)> &work);
    void inProcedure(QLatin1StringView procedure, const std::function<void()> &body,
                     const QString &advice = {});

    std::unique_ptr<Ui::frmIBLReport> ui;
    LinkReportModel *m_model;
    Kind m_kind = IBD;
    int m_tab = 0;       ///< the one that is listed
    QString m_noLinks;   ///< why there are none
    int m_sortedBy = -1; ///< column; -1 is as listed
    Qt::SortOrder m_sortOrder = Qt::AscendingOrder;
    QString m_savedAs; ///< the latest file of Save as
};
