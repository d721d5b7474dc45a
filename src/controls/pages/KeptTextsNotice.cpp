#include "controls/pages/KeptTextsNotice.h"

#include "controls/pages/KeptTexts.h"
#include "controls/pages/KeptTextsDialog.h"
#include "controls/pages/PageQuestions.h"
#include "controls/parts/Handler.h"
#include "controls/session/ProjectSession.h"

KeptTextsNotice::KeptTextsNotice(ProjectSession &session, QWidget *window)
    : QObject(window)
    , m_session(session)
    , m_window(window)
{
    connect(&session, &ProjectSession::wasReset, this, &KeptTextsNotice::lookOnce);
}

void KeptTextsNotice::lookOnce()
{
    if (m_session.projectName() == m_project)
        return;
    m_project = m_session.projectName();
    // The window comes first, then what there is to say.
    if (!m_project.isEmpty())
        QMetaObject::invokeMethod(this, &KeptTextsNotice::tell, Qt::QueuedConnection);
}

void KeptTextsNotice::tell()
{
    handled(m_session.program(), [this] {
        const QStringList pages = KeptTexts(m_session.program().files).pages(m_session.folder());
        if (pages.isEmpty()
            || !PageQuestions::showKept(m_session.program().messages,
                                        static_cast<int>(pages.size())))
            return;
        auto *dialog = new KeptTextsDialog(m_session, pages, m_window);
        dialog->setAttribute(Qt::WA_DeleteOnClose);
        connect(dialog, &KeptTextsDialog::pageRequested, this, &KeptTextsNotice::pageRequested);
        connect(&m_session, &ProjectSession::wasReset, dialog, &QWidget::close);
        dialog->show();
    });
}
