#include "controls/books/KeyWordsPane.h"

#include "controls/books/EntryList.h"
#include "controls/books/KeyWordCommands.h"
#include "controls/books/PagePlaces.h"
#include "controls/books/PageRules.h"
#include "controls/parts/Handler.h"
#include "controls/session/ProjectPages.h"

#include <QGroupBox>
#include <QListWidget>
#include <QPushButton>
#include <QVBoxLayout>

using namespace Qt::StringLiterals;

KeyWordsPane::KeyWordsPane(ProjectSession &session, QWidget *parent)
    : QWidget(parent)
    , m_session(session)
    , m_keyWords(new EntryList(
          {u"KeyWord"_s, tr("New keyword"), tr("Keywords of the page"), tr("A&dd"), tr("&Remove")},
          &PageRules::keyWordProblem, this))
    , m_synonyms(new EntryList(
          {u"Synonym"_s, tr("New synonym"), tr("Synonyms of the keyword"), tr("Add s&ynonym"),
           tr("Remo&ve")},
          [this](const QString &text, const QStringList &entries) {
              return PageRules::keyWordProblem(text, entries + QStringList{m_keyWords->chosen()});
          },
          this))
    , lstSuggestions(new QListWidget(this))
    , cmdAddSuggestion(new QPushButton(tr("Add as key&word"), this))
{
    layOut();
    connect(m_keyWords, &EntryList::addRequested, this, &KeyWordsPane::add);
    connect(m_keyWords, &EntryList::removeRequested, this, &KeyWordsPane::remove);
    connect(m_keyWords, &EntryList::chosenChanged, this, &KeyWordsPane::showSynonyms);
    connect(m_synonyms, &EntryList::addRequested, this, [this](const QString &synonym) {
        setSynonyms(m_synonyms->entries() + QStringList{synonym});
    });
    connect(m_synonyms, &EntryList::removeRequested, this, [this](const QString &synonym) {
        QStringList left = m_synonyms->entries();
        left.removeOne(synonym);
        setSynonyms(left);
    });
    connect(cmdAddSuggestion, &QPushButton::clicked, this, &KeyWordsPane::addSuggestion);
    connect(lstSuggestions, &QListWidget::itemActivated, this, &KeyWordsPane::addSuggestion);
    connect(&m_session.pages(), &ProjectPages::updated, this, &KeyWordsPane::showSuggestions);
    connect(&m_session, &ProjectSession::keyWordsChanged, this, &KeyWordsPane::refresh);
}

void KeyWordsPane::layOut()
{
    lstSuggestions->setObjectName(u"lstSuggestions"_s);
    lstSuggestions->setAccessibleName(tr("Suggested keywords"));
    lstSuggestions->setTextElideMode(Qt::ElideMiddle);
    cmdAddSuggestion->setObjectName(u"cmdAddSuggestion"_s);
    const auto group = [this](const QString &title, std::initializer_list<QWidget *> parts) {
        auto *box = new QGroupBox(title, this);
        auto *column = new QVBoxLayout(box);
        for (QWidget *const part : parts)
            column->addWidget(part);
        column->setAlignment(parts.size() > 1 ? parts.end()[-1] : parts.begin()[0],
                             parts.size() > 1 ? Qt::AlignLeft : Qt::Alignment());
        return box;
    };
    auto *layout = new QVBoxLayout(this);
    layout->addWidget(group(tr("Keywords of the page"), {m_keyWords}), 3);
    layout->addWidget(group(tr("Synonyms of the chosen keyword"), {m_synonyms}), 2);
    layout->addWidget(
        group(tr("Suggestions from the headings"), {lstSuggestions, cmdAddSuggestion}), 2);
}

void KeyWordsPane::refresh()
{
    m_isOutdated = true;
    if (isVisible())
        show();
}

void KeyWordsPane::showEvent(QShowEvent *event)
{
    QWidget::showEvent(event);
    if (m_isOutdated)
        show();
}

void KeyWordsPane::show()
{
    m_isOutdated = false;
    const auto &book = m_session.currentBook();
    m_book = book.value_or(TocBook());
    m_page = book ? pageOfBook(m_session, *book, m_session.currentPage()) : std::nullopt;
    setEnabled(m_page.has_value());
    m_keyWords->setEntries(m_page ? m_page->keyWords : QStringList());
    showSuggestions();
}

void KeyWordsPane::showSynonyms()
{
    const QString keyWord = m_keyWords->chosen();
    m_synonyms->setEnabled(!keyWord.isEmpty());
    const QStringList synonyms = handled(m_session.program(), [&] {
        return keyWord.isEmpty() ? QStringList() : KeyWordCommands(m_session).synonyms(keyWord);
    });
    m_synonyms->setEntries(synonyms);
}

void KeyWordsPane::showSuggestions()
{
    lstSuggestions->clear();
    const IndexedPage *const page =
        m_page ? m_session.pages().latest().page(pathOfPage(m_session, m_book, *m_page)) : nullptr;
    QStringList taken = m_keyWords->entries();
    if (page != nullptr) {
        for (const QString &text : QStringList{page->title} + page->headings) {
            if (!PageRules::keyWordProblem(text, taken).isEmpty())
                continue;
            taken.append(text);
            lstSuggestions->addItem(text.trimmed());
        }
    }
    cmdAddSuggestion->setEnabled(lstSuggestions->count() > 0);
    cmdAddSuggestion->setToolTip(cmdAddSuggestion->isEnabled() ? QString()
                                                               : tr("There are no suggestions."));
    lstSuggestions->setCurrentRow(0);
}

void KeyWordsPane::add(const QString &keyWord)
{
    const bool isDone = handled(m_session.program(), [&] {
        return KeyWordCommands(m_session).add(m_book, m_page->id, keyWord);
    });
    refresh();
    if (isDone)
        Q_EMIT changed();
}

void KeyWordsPane::remove(const QString &keyWord)
{
    const bool isDone = handled(m_session.program(), [&] {
        return KeyWordCommands(m_session).remove(m_book, m_page->id, keyWord);
    });
    refresh();
    if (isDone)
        Q_EMIT changed();
}

void KeyWordsPane::addSuggestion()
{
    if (const QListWidgetItem *const item = lstSuggestions->currentItem())
        add(item->text());
}

void KeyWordsPane::setSynonyms(const QStringList &synonyms)
{
    const bool isDone = handled(m_session.program(), [&] {
        return KeyWordCommands(m_session).setSynonyms(m_book, m_page->id, m_keyWords->chosen(),
                                                      synonyms);
    });
    refresh();
    if (isDone)
        Q_EMIT changed();
}
