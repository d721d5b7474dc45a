#pragma once

#include "projectfiles/BookFile.h"

#include <QSet>

/// A place in an outline: beside a page, or behind the last page below it. Below "" is the end of
/// the book.
struct OutlinePlace
{
    enum class Where { Before, After, Below } where = Where::Below;
    QString page = {};
};

// Moves pages about in an outline. Pages are meant by their ids; those below a page go with it.
namespace OutlineEdit {

/// Null when there is no such page.
BookPage *find(QList<BookPage> &outline, const QString &id);
/// A place as the parent ("": the top) and the row below it; -1 is behind the last one.
struct Row
{
    QString parent = {};
    int row = -1;
};
Row rowOf(const QList<BookPage> &outline, const OutlinePlace &place);
/// Takes pages out, in the order of the outline.
QList<BookPage> take(QList<BookPage> &outline, const QSet<QString> &ids);
/// False, and nothing changed, when the place is not there.
bool insert(QList<BookPage> &outline, const QList<BookPage> &pages, const OutlinePlace &place);

// Each of these is false when nothing moved.
/// Each page changes places with the one before it below the same parent.
bool moveUp(QList<BookPage> &outline, const QSet<QString> &ids);
bool moveDown(QList<BookPage> &outline, const QSet<QString> &ids);
/// Each page goes behind its parent.
bool promote(QList<BookPage> &outline, const QSet<QString> &ids);
/// Each page goes below the one before it.
bool demote(QList<BookPage> &outline, const QSet<QString> &ids);
/// The pages directly below a page ("": of the book) in the order of their titles, numbers by
/// value.
bool sort(QList<BookPage> &outline, const QString &parent);

} // namespace OutlineEdit
