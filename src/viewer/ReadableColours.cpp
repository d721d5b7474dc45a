#include "viewer/ReadableColours.h"

#include <QTextBlock>
#include <QTextCursor>
#include <QTextDocument>
#include <QTextTable>

namespace {

constexpr int leastDifference = 64; // of 255

bool isFilled(const QTextFormat &format)
{
    const QBrush background = format.background();
    return background.style() != Qt::NoBrush && background.isOpaque();
}

/// The page, a table or a cell of it around the text has a background.
bool standsOnBackground(const QTextCursor &cursor)
{
    for (const QTextFrame *frame = cursor.currentFrame(); frame != nullptr;
         frame = frame->parentFrame()) {
        const auto *const table = qobject_cast<const QTextTable *>(frame);
        if (isFilled(frame->frameFormat())
            || (table != nullptr && isFilled(table->cellAt(cursor).format())))
            return true;
    }
    return false;
}

bool isHardToRead(const QTextCharFormat &text, const QColor &base)
{
    return text.foreground().style() != Qt::NoBrush && !isFilled(text)
           && qAbs(qGray(text.foreground().color().rgb()) - qGray(base.rgb())) < leastDifference;
}

/// Changing a format may join fragments, so they are gathered first.
QList<QTextFragment> hardToRead(QTextDocument &page, const QColor &base)
{
    QList<QTextFragment> found;
    for (QTextBlock block = page.begin(); block.isValid(); block = block.next()) {
        if (isFilled(block.blockFormat()))
            continue;
        for (auto at = block.begin(); !at.atEnd(); ++at) {
            if (isHardToRead(at.fragment().charFormat(), base))
                found.append(at.fragment());
        }
    }
    return found;
}

} // namespace

void makeReadable(QTextDocument &page, const QColor &base)
{
    QTextCursor cursor(&page);
    cursor.beginEditBlock();
    for (const QTextFragment &text : hardToRead(page, base)) {
        QTextCharFormat format = text.charFormat();
        const int start = text.position(), length = text.length();
        cursor.setPosition(start);
        if (standsOnBackground(cursor))
            continue;
        cursor.setPosition(start + length, QTextCursor::KeepAnchor);
        format.clearForeground();
        cursor.setCharFormat(format);
    }
    cursor.endEditBlock();
}
