#include "controls/pages/KeptTextsDialog.h"

#include "controls/pages/PageQuestions.h"
#include "controls/pages/PageStore.h"
#include "controls/parts/Handler.h"
#include "platform/Paths.h"

#include <QDialogButtonBox>
#include <QFontMetrics>
#include <QLabel>
#include <QListWidget>
#include <QPushButton>
#include <QVBoxLayout>

using namespace Qt::StringLiterals;

KeptTextsDialog::KeptTextsDialog(ProjectSession &session, const QStringList &pages, QWidget *parent)
    : QDialog(parent)
    , m_session(session)
    , m_texts(session.program().files)
    , m_list(new QListWidget(this))
{
    setObjectName(u"dlgKeptTexts"_s);
    setWindowTitle(tr("Unsaved text that was kept"));
    m_list->setObjectName(u"lstKept"_s);
    m_list->addItems(pages);
    m_list->setCurrentRow(0);
    connect(m_list, &QListWidget::itemDoubleClicked, this, &KeptTextsDialog::openPage);
    layOut();
    resize(80 * fontMetrics().averageCharWidth(), 15 * fontMetrics().height());
}

void KeptTextsDialog::layOut()
{
    auto *label = new QLabel(
        tr("&Open a page to see what was kept of it; a bar above its text offers it."), this);
    label->setWordWrap(true);
    label->setBuddy(m_list);
    auto *buttons = new QDialogButtonBox(QDialogButtonBox::Close, this);
    const auto add = [&](const char *name, const QString &text, void (KeptTextsDialog::*slot)()) {
        QPushButton *button = buttons->addButton(text, QDialogButtonBox::ActionRole);
        button->setObjectName(QLatin1StringView(name));
        button->setAutoDefault(false);
        connect(button, &QPushButton::clicked, this, slot);
        return button;
    };
    add("cmdOpenKept", tr("Open &page"), &KeptTextsDialog::openPage)->setDefault(true);
    add("cmdSaveKept", tr("&Save text as..."), &KeptTextsDialog::saveText);
    add("cmdDiscardKept", tr("&Discard"), &KeptTextsDialog::discard);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::close);
    auto *layout = new QVBoxLayout(this);
    layout->addWidget(label);
    layout->addWidget(m_list);
    layout->addWidget(buttons);
}

QString KeptTextsDialog::page() const
{
    return m_list->currentItem() != nullptr ? m_list->currentItem()->text() : QString();
}

void KeptTextsDialog::openPage()
{
    if (!page().isEmpty())
        Q_EMIT pageRequested(page());
}

// The newest, where several were kept.
void KeptTextsDialog::saveText()
{
    handled(m_session.program(), [this] {
        const QString kept = m_texts.placesOf(m_session.folder(), page()).value(0);
        if (kept.isEmpty())
            return;
        const PageText text = inUtf8(m_texts.textIn(kept));
        Program &program = m_session.program();
        const QString path =
            program.fileDialogs.saveFile(tr("Save the kept text"), lastComponent(page()),
                                         tr("HTML files") + u"(*.htm;*.html)|*.htm;*.html"_s);
        if (!path.isEmpty())
            program.files.replaceFile(path, encodePage(text.text, text.encoding));
    });
}

void KeptTextsDialog::discard()
{
    handled(m_session.program(), [this] {
        const QString shown = m_session.shownPath(m_session.folder() + page());
        if (page().isEmpty() || !PageQuestions::discardKept(m_session.program().messages, shown))
            return;
        for (const QString &kept : m_texts.placesOf(m_session.folder(), page()))
            m_texts.forget(kept);
        delete m_list->takeItem(m_list->currentRow());
        if (m_list->count() == 0)
            close();
    });
}
