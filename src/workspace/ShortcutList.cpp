#include "workspace/ShortcutList.h"

#include <QDialogButtonBox>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QTreeWidget>
#include <QVBoxLayout>

using namespace Qt::StringLiterals;

namespace {

struct Shortcut
{
    const char *keys;
    const char *does;
};
struct Place
{
    const char *name;
    QList<Shortcut> shortcuts;
};

QList<Place> places()
{
    return {
        {QT_TRANSLATE_NOOP("ShortcutList", "Everywhere"),
         {{"F1", QT_TRANSLATE_NOOP("ShortcutList", "Help about the place you are in")},
          {"F5", QT_TRANSLATE_NOOP("ShortcutList", "Read again from the disk")},
          {"F6", QT_TRANSLATE_NOOP("ShortcutList", "Next part of the window")},
          {"Shift+F6", QT_TRANSLATE_NOOP("ShortcutList", "Previous part of the window")},
          {"Ctrl+Z", QT_TRANSLATE_NOOP("ShortcutList", "Undo the last command, or typing")},
          {"Ctrl+Shift+Z", QT_TRANSLATE_NOOP("ShortcutList", "Do it again")},
          {"Ctrl+Shift+F", QT_TRANSLATE_NOOP("ShortcutList", "Find and replace in all pages")},
          {"Ctrl+?", QT_TRANSLATE_NOOP("ShortcutList", "This list")},
          {"Menu", QT_TRANSLATE_NOOP("ShortcutList", "What can be done with what is chosen")},
          {"Ctrl+Q", QT_TRANSLATE_NOOP("ShortcutList", "Exit")}}},
        {QT_TRANSLATE_NOOP("ShortcutList", "Trees and lists"),
         {{"Enter", QT_TRANSLATE_NOOP("ShortcutList", "Open")},
          {"Ins", QT_TRANSLATE_NOOP("ShortcutList", "New")},
          {"F2", QT_TRANSLATE_NOOP("ShortcutList", "Rename")},
          {"Del", QT_TRANSLATE_NOOP("ShortcutList", "Delete")},
          {"Alt+Up", QT_TRANSLATE_NOOP("ShortcutList", "Move up")},
          {"Alt+Down", QT_TRANSLATE_NOOP("ShortcutList", "Move down")},
          {"Alt+Left", QT_TRANSLATE_NOOP("ShortcutList", "One level up, or one column left")},
          {"Alt+Right", QT_TRANSLATE_NOOP("ShortcutList", "One level down, or one column right")},
          {"Ctrl+X", QT_TRANSLATE_NOOP("ShortcutList", "Cut, to move it elsewhere")},
          {"Ctrl+V", QT_TRANSLATE_NOOP("ShortcutList", "Move here what was cut")},
          {"Ctrl+F", QT_TRANSLATE_NOOP("ShortcutList", "Filter")}}},
        {QT_TRANSLATE_NOOP("ShortcutList", "Page source"),
         {{"Ctrl+S", QT_TRANSLATE_NOOP("ShortcutList", "Save the page")},
          {"Ctrl+F", QT_TRANSLATE_NOOP("ShortcutList", "Find in the page")},
          {"Ctrl+H", QT_TRANSLATE_NOOP("ShortcutList", "Replace in the page")},
          {"F3", QT_TRANSLATE_NOOP("ShortcutList", "Find next")},
          {"Shift+F3", QT_TRANSLATE_NOOP("ShortcutList", "Find previous")},
          {"Ctrl+G", QT_TRANSLATE_NOOP("ShortcutList", "Go to a line")},
          {"Ctrl+K", QT_TRANSLATE_NOOP("ShortcutList", "Insert a link")},
          {"Ctrl++", QT_TRANSLATE_NOOP("ShortcutList", "Larger text")},
          {"Ctrl+-", QT_TRANSLATE_NOOP("ShortcutList", "Smaller text")},
          {"Ctrl+0", QT_TRANSLATE_NOOP("ShortcutList", "Text in its usual size")}}},
        {QT_TRANSLATE_NOOP("ShortcutList", "Books"),
         {{"Ctrl+PgUp", QT_TRANSLATE_NOOP("ShortcutList", "Previous page of the book")},
          {"Ctrl+PgDown", QT_TRANSLATE_NOOP("ShortcutList", "Next page of the book")},
          {"Ctrl+[", QT_TRANSLATE_NOOP("ShortcutList", "Back to the page you came from")},
          {"Ctrl+]", QT_TRANSLATE_NOOP("ShortcutList", "Forward again")}}},
    };
}

} // namespace

ShortcutList::ShortcutList(QWidget *parent)
    : QDialog(parent)
    , txtFilter(new QLineEdit(this))
    , tvwKeys(new QTreeWidget(this))
{
    setWindowTitle(tr("Keyboard shortcuts"));
    setObjectName(u"ShortcutList"_s);
    txtFilter->setObjectName(u"txtFilter"_s);
    txtFilter->setPlaceholderText(tr("Filter"));
    txtFilter->setAccessibleName(tr("Filter of the shortcuts"));
    txtFilter->setClearButtonEnabled(true);
    tvwKeys->setObjectName(u"tvwKeys"_s);
    tvwKeys->setAccessibleName(tr("Keyboard shortcuts"));
    tvwKeys->setHeaderLabels({tr("Keys"), tr("What they do")});
    tvwKeys->setRootIsDecorated(false);
    auto *buttons = new QDialogButtonBox(QDialogButtonBox::Close, this);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    connect(txtFilter, &QLineEdit::textChanged, this, &ShortcutList::filter);

    auto *layout = new QVBoxLayout(this);
    layout->addWidget(txtFilter);
    layout->addWidget(tvwKeys);
    layout->addWidget(buttons);
    fill();
    resize(fontMetrics().averageCharWidth() * 76, fontMetrics().height() * 34);
}

void ShortcutList::fill()
{
    for (const Place &place : places()) {
        auto *top = new QTreeWidgetItem(tvwKeys, {tr(place.name)});
        top->setFirstColumnSpanned(true);
        QFont bold = font();
        bold.setBold(true);
        top->setFont(0, bold);
        for (const Shortcut &shortcut : place.shortcuts) {
            const QKeySequence keys(QString::fromLatin1(shortcut.keys), QKeySequence::PortableText);
            new QTreeWidgetItem(top, {keys.toString(QKeySequence::NativeText), tr(shortcut.does)});
        }
    }
    tvwKeys->expandAll();
    tvwKeys->header()->setSectionResizeMode(0, QHeaderView::ResizeToContents);
}

void ShortcutList::filter(const QString &text)
{
    for (int i = 0; i < tvwKeys->topLevelItemCount(); ++i) {
        QTreeWidgetItem *const place = tvwKeys->topLevelItem(i);
        bool any = false;
        for (int row = 0; row < place->childCount(); ++row) {
            QTreeWidgetItem *const item = place->child(row);
            const bool fits = item->text(0).contains(text, Qt::CaseInsensitive)
                              || item->text(1).contains(text, Qt::CaseInsensitive);
            item->setHidden(!fits);
            any = any || fits;
        }
        place->setHidden(!any);
    }
}
