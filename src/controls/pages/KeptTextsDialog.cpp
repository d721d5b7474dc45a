#include "controls/pages/KeptTextsDialog.h"

#include "controls/pages/PageQuestions.h"
#include "controls/pages/PageStore.h"
#include "controls/parts/Handler.h"
#include "platform/Paths.h"
#include "tools/PageCharset.h"

#include <QDialogButtonBox>
#include <QFontMetrics>
#include <QLabel>
#include <QListWidget>
#include <QPushButton>
#include <QVBoxLayout>

#include <algorithm>

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
    for (const QString &page : pages)
        addPage(page);
    m_list->setCurrentRow(0);
    connect(m_list, &QListWidget::itemDoubleClicked, this, &KeptTextsDialog::openPage);
    layOut();
    resize(80 * fontMetrics().averageCharWidth(), 15 * fontMetrics().height());
}

void KeptTextsDialog::addPage(const QString &page)
{
    const QList<KeptText> left = m_texts.leftOf(m_session.folder(), page);
    const bool mayBeNeeded = std::any_of(left.cbegin(), left.cend(),
                                         [](const KeptText &text) { return text.mayBeNeeded; });
    auto *item = new QListWidgetItem(
        mayBeNeeded ? tr("%1 (another author may still be working on it)").arg(page) : page,
        m_list);
    item->setData(Qt::UserRole, page);
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
    const QListWidgetItem *item = m_list->currentItem();
    return item != nullptr ? item->data(Qt::UserRole).toString() : QString();
}

QList<KeptText> KeptTextsDialog::left()
{
    const QList<KeptText> left = m_texts.leftOf(m_session.folder(), page());
    if (left.isEmpty())
        throw QvError(FileNotFound, {},
                      tr("No unsaved text of %1 is left: it was used or discarded meanwhile, or a "
                         "QV Developer that is running keeps it.")
                          .arg(page()));
    return left;
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
        if (page().isEmpty())
            return;
        const PageText text = inUtf8(m_texts.textIn(left().first().place));
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
        if (page().isEmpty())
            return;
        const QList<KeptText> texts = left();
        const QString shown = m_session.shownPath(m_session.folder() + page());
        if (!PageQuestions::discardKept(m_session.program().messages, shown))
            return;
        for (const KeptText &text : texts)
            m_texts.discard(text.place);
        delete m_list->takeItem(m_list->currentRow());
        if (m_list->count() == 0)
            close();
    });
}
